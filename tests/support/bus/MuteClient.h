#pragma once

#include <QByteArray>

// A client of the bus that sends calls and never reads an answer: the protocol by hand, as every library reads.
class MuteClient final
{
public:
    // address: as PrivateBus has it. Throws std::runtime_error when the bus does not take the client.
    explicit MuteClient(const QByteArray& address);
    ~MuteClient();

    MuteClient(const MuteClient&) = delete;
    MuteClient& operator=(const MuteClient&) = delete;

    // Sends a call without arguments. False when the bus takes no more.
    [[nodiscard]] bool Call(const QByteArray& service, const QByteArray& path, const QByteArray& interface,
                            const QByteArray& method);

private:
    [[nodiscard]] bool Send(const QByteArray& bytes) const;
    [[nodiscard]] bool Authenticate() const;

    int m_socket = -1;
    quint32 m_serial = 0;
};
