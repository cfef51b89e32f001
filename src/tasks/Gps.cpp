#include "Gps.h"

#include "Log.h"
#include "peers/GpsManager.h"
#include "text/Parameter.h"

Gps::Gps(const QString& enable)
    : PunctualTask(TASK_GPS, {})
    , m_enabled(Parameter::ToSwitch(enable, [&] {
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Gps enabled/disabled from parameters: '%s'. Using false.",
                                 qPrintable(enable)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Gps: %d", m_enabled);
}

bool Gps::Run()
{
    return GpsManager::SetEnabled(m_enabled).Report(
        [&](const char* error) { OZNA_LOG(LEVEL_ERROR, "SetEnabled(%d) request error: %s\n", m_enabled, error); },
        [&](int status) { OZNA_LOG(LEVEL_ERROR, "SetEnabled(%d) error: %d\n", m_enabled, status); },
        [&] { OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | Gps: %d", m_enabled); });
}
