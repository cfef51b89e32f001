#include "Volume.h"

#include "Log.h"
#include "peers/SoundManager.h"
#include "text/Parameter.h"

Volume::Volume(const QString& volume)
    : PunctualTask(TASK_VOLUME, {})
    , m_volume(Parameter::ToInt(volume, 0, [&] {
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Volume value from parameters: '%s'. Using 0.",
                                 qPrintable(volume)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Volume: %d", m_volume);
}

bool Volume::Run()
{
    return SoundManager::SetMasterVolume(m_volume).Report(
        [&](const char* error) { OZNA_LOG(LEVEL_ERROR, "SetVolume(%d) request error: %s\n", m_volume, error); },
        [&](int status) { OZNA_LOG(LEVEL_ERROR, "SetVolume(%d) error: %d\n", m_volume, status); },
        [&] { OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | Volume: %d", m_volume); });
}
