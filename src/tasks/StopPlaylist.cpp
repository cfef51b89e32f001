#include "StopPlaylist.h"

#include "peers/SoundManager.h"
#include "text/Printable.h"

StopPlaylist::StopPlaylist(const QString& identifier)
    : StopTask(TASK_STOP_PLAYLIST, SoundManager::SOURCE_PLAYLIST, identifier)
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | StopPlaylist: id=%s", Printable(identifier).Text());
}

bool StopPlaylist::Run()
{
    return RequestStop(OZNA_LOG_SITE);
}
