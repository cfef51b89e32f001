#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>

#include <memory>

// Makes a named pipe, and reads it in the event loop while it is open.
class PipeReader final
{
public:
    explicit PipeReader(const QString& path);
    ~PipeReader();
    Q_DISABLE_COPY_MOVE(PipeReader)

    // False when the pipe cannot be opened.
    bool Open();
    void Close();
    // Keeps it open, and reads nothing more.
    void Stall();

    [[nodiscard]] const QByteArray& Read() const { return m_read; }
    // Whether anything but silence was read since the last call.
    bool HasHeard();
    // The frames so far in which something sounds: of a steady tone, its length.
    [[nodiscard]] qint64 Heard() const;

private:
    void Take();

    QByteArray m_path;
    int m_file = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QByteArray m_read;
    qsizetype m_looked = 0;
};
