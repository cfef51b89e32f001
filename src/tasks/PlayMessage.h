#pragma once

#include "PlayTask.h"

#include <QTime>

// Plays one message file at a given time of day and runs until the sound manager reports a file's end.
// The request is sent ahead of that time and carries it: the sound manager starts the message itself.
class PlayMessage final : public PlayTask
{
    Q_OBJECT
public:
    // time: "hh:mm:ss", anything else is sent as an empty time. volume: see PlayTask.
    PlayMessage(const QString& time, const QString& file, const QString& volume);

    // Stops the message when it is still running.
    ~PlayMessage() override;

    unsigned int GetDelayable_s() const override;
    unsigned int GetMostDelayable_s() const override;
    bool Run() override;

Q_SIGNALS:
    void TaskCompleted();

private Q_SLOTS:
    // file: what the signal names; whatever file it is, the task has ended.
    void OnPlayFileCompleted(const QString& file);

private:
    [[nodiscard]] QString GetSubject() const override { return m_file; }
    [[nodiscard]] const char* Source() const override { return SoundManager::SOURCE_FILE; }

    const QTime m_startTime;
    const QString m_file;
};
