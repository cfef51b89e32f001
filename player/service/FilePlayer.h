#pragma once

#include "GuardedFolder.h"
#include "TimedPlayer.h"

// Plays messages: single files of the media folder.
class FilePlayer final : public TimedPlayer
{
    Q_OBJECT
public:
    explicit FilePlayer(const Means& means);
    ~FilePlayer() override;

    // startTime: "hh:mm:ss"; any other text, and a time that has passed by less than half a day, means at once.
    void Play(const QString& file, const QString& startTime, const Answer& answer);

    // Ends what plays and what waits.
    void Stop() { m_requests.Stop(); }

private:
    const GuardedFolder m_media;
};
