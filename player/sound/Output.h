#pragma once

#include "sound/Mailbox.h"
#include "sound/Workers.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <memory>

class Mixer;
class OutputPipeline;

// The output: opened when it is needed, then kept open, because devices click when they are opened, until nothing has
// been heard for long. Opened again, at growing intervals, when it is lost. Nothing here waits for the device.
class Output final : public QObject
{
    Q_OBJECT
public:
    // output: as in SoundSettings.
    Output(QString output, std::shared_ptr<Mixer> mixer);
    ~Output() override;

    // Opens it unless it is open or on the way; Opened or Failed follows.
    void Open();
    [[nodiscard]] bool IsOpen() const { return m_state == State::OPEN; }

    // Whether somebody plays or waits: then what is lost is opened again, and what is open stays so.
    void SetWanted(bool isWanted);

Q_SIGNALS:
    void Opened();
    // It could not be opened; reason in words.
    void Failed(const QString& reason);
    // It was open, and is not any more.
    void Lost(const QString& reason);
    // Behind a Failed: the device has held on to its thread for so long that this process will not get it back.
    void Stuck(const QString& reason);

private:
    enum class State
    {
        CLOSED,
        OPENING,
        OPEN,
    };

    using Number = std::shared_ptr<std::atomic<quint64>>; // of the attempt that counts

    void Finish(quint64 attempt, std::shared_ptr<OutputPipeline> pipeline, const QString& reason);
    void Discard(std::shared_ptr<OutputPipeline> pipeline);
    void Fail(const QString& reason);
    void Lose(quint64 attempt, const QString& reason);
    void Release();
    void TryAgainLater();
    void WatchProgress();
    void Close();

    const QString m_output;
    const std::shared_ptr<Mixer> m_mixer;
    const std::shared_ptr<Mailbox> m_mailbox;
    Workers m_worker{1}; // in order: a device is opened once it has been closed
    State m_state = State::CLOSED;
    const Number m_attempt; // what an earlier one tells is not heard any more
    std::shared_ptr<OutputPipeline> m_pipeline;
    bool m_isWanted = false;
    bool m_wasOpen = false;
    qint64 m_mixed = 0; // when progress was looked at last
    int m_delay_ms;
    QString m_reason; // told last
    QTimer m_patience;
    QTimer m_retry;
    QTimer m_progress;
    QTimer m_idle;
};
