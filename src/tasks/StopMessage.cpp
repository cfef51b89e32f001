#include "StopMessage.h"

#include "peers/SoundManager.h"

StopMessage::StopMessage()
    : StopTask(TASK_STOP_MESSAGE, SoundManager::SOURCE_FILE)
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | StopMessage");
}

bool StopMessage::Run()
{
    return RequestStop(OZNA_LOG_SITE);
}
