#pragma once

#include <QByteArray>
#include <QString>

// A pipe as a daemon's standard error, which is read when the test says so, and full until then.
class LogPipe final
{
public:
    // Makes the pipe under that name.
    explicit LogPipe(const QString& path);
    ~LogPipe();

    LogPipe(const LogPipe&) = delete;
    LogPipe& operator=(const LogPipe&) = delete;

    // Waits until the pipe takes no more.
    [[nodiscard]] bool WaitUntilFull() const;

    // Reads on until the log holds that text; false when it does not within the time.
    [[nodiscard]] bool ReadUntil(const QByteArray& text);

    [[nodiscard]] const QByteArray& Log() const { return m_log; }

private:
    int m_descriptor = -1;
    QByteArray m_log;
};
