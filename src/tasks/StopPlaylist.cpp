#include "StopPlaylist.h"

#include "peers/SoundManager.h"

StopPlaylist::StopPlaylist(const QString& identifier)
    : StopTask(TASK_STOP_PLAYLIST, SoundManager::SOURCE_PLAYLIST, identifier)
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | StopPlaylist: id=%s", qPrintable(identifier));
}

bool StopPlaylist::Run()
{
    return RequestStop(OZNA_LOG_SITE);
}
