#pragma once

#include <QByteArrayList>
#include <QMap>

// A journal's socket, from which the test reads. The log client of this program sends its records there and not to the
// machine's own journal.
class JournalSocket final
{
public:
    JournalSocket();
    ~JournalSocket();

    JournalSocket(const JournalSocket&) = delete;
    JournalSocket& operator=(const JournalSocket&) = delete;

    // The journal goes, and its socket with it; and comes back with another one at the same place.
    void Close();
    void Open();

    // Reads what there is, and no more than that. An entry is its fields, by their names.
    using Entry = QMap<QByteArray, QByteArray>;
    [[nodiscard]] QList<Entry> Read() const;

private:
    int m_descriptor = -1;
};
