#include "StopRadioFm.h"

#include "peers/SoundManager.h"

StopRadioFm::StopRadioFm()
    : StopTask(TASK_STOP_RADIO_FM, SoundManager::SOURCE_RADIO_FM)
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | StopRadioFm");
}

bool StopRadioFm::Run()
{
    return RequestStop(OZNA_LOG_SITE);
}
