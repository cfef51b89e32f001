#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

// A browser's process, and the messages that go to it and come from it. Whatever goes wrong throws std::runtime_error.
class BrowserPipe final
{
public:
    // Starts program. folder: where everything goes that it leaves behind.
    BrowserPipe(const QString& program, const QStringList& options, const QString& folder);

    // Ends it.
    ~BrowserPipe();

    BrowserPipe(const BrowserPipe&) = delete;
    BrowserPipe& operator=(const BrowserPipe&) = delete;

    void Send(const QByteArray& message) const;

    // Waits for the next message.
    [[nodiscard]] QByteArray Receive();

    [[noreturn]] static void Fail(const QByteArray& what);

private:
    QProcess m_process;
    int m_toBrowser = -1;
    int m_fromBrowser = -1;
    QByteArray m_received;
};
