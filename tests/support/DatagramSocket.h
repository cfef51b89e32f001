#pragma once

#include <QByteArrayList>
#include <QString>

// A socket that others send datagrams to, which are read when the test says so.
class DatagramSocket final
{
public:
    // path: below a folder that is there; with "@" in front an abstract name.
    explicit DatagramSocket(const QString& path);
    ~DatagramSocket();

    DatagramSocket(const DatagramSocket&) = delete;
    DatagramSocket& operator=(const DatagramSocket&) = delete;

    // Reads what there is, and no more than that.
    [[nodiscard]] QByteArrayList Read() const;

private:
    const QByteArray m_path;
    const int m_descriptor;
};
