#include "FilePlayer.h"

#include "PlayerSettings.h"

FilePlayer::FilePlayer(const Means& means)
    : TimedPlayer(means, Piece::Place::MESSAGE)
    , m_media(means.settings.media)
{
}

FilePlayer::~FilePlayer() = default;

void FilePlayer::Play(const QString& file, const QString& startTime, const Answer& answer)
{
    // The volume goes with its request, also where that comes to nothing.
    const Requests::Request request = Begin(file, {}, startTime);
    const GuardedFolder::Found found = m_media.Find(file);
    if (found.status == Status::ACCEPTED)
        TimedPlayer::Play(request, {found.path}, answer);
    else
        answer(found.status);
}
