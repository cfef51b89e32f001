#pragma once

#include "PlayTask.h"

// Plays a live RTSP stream of the site's server and runs until the sound manager reports that streaming has ended.
class PlayStream final : public PlayTask
{
    Q_OBJECT
public:
    // portAndPath: what follows the server's address and ":" in the stream's URI. volume: see PlayTask.
    PlayStream(const QString& portAndPath, const QString& volume);

    // Stops the stream when it is still running.
    ~PlayStream() override;

    unsigned int GetDelayable_s() const override;
    unsigned int GetMostDelayable_s() const override;
    bool Run() override;

Q_SIGNALS:
    void TaskCompleted();

private Q_SLOTS:
    // enabled: true when a stream begins, which is ignored.
    void OnPlayStreamCompleted(bool enabled);

private:
    [[nodiscard]] QString GetSubject() const override { return m_uri; }
    [[nodiscard]] const char* Source() const override { return SoundManager::SOURCE_STREAM; }

    // Builds the URI with the server's address from the configuration; false when there is none to be had.
    bool SetUp();

    const QString m_portAndPath;
    QString m_uri;
};
