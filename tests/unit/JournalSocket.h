#pragma once

#include "DatagramSocket.h"

#include <QByteArray>
#include <QMap>

#include <optional>

// A journal's socket, from which the test reads. The log client of this program sends its records there and not to the
// machine's own journal.
class JournalSocket final
{
public:
    JournalSocket() { Open(); }

    // The journal goes, and its socket with it; and comes back with another one at the same place.
    void Close() { m_socket.reset(); }
    void Open();

    // Reads what there is, and no more than that. An entry is its fields, by their names.
    using Entry = QMap<QByteArray, QByteArray>;
    [[nodiscard]] QList<Entry> Read() const;

private:
    std::optional<DatagramSocket> m_socket;
};
