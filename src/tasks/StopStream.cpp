#include "StopStream.h"

#include "peers/SoundManager.h"

StopStream::StopStream()
    : StopTask(TASK_STOP_STREAM, SoundManager::SOURCE_STREAM)
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | StopStream");
}

bool StopStream::Run()
{
    return RequestStop(OZNA_LOG_SITE);
}
