#include "Light.h"

#include "Log.h"
#include "peers/LightManager.h"
#include "text/Parameter.h"

Light::Light(const QString& intensity)
    : PunctualTask(TASK_LIGHT, {})
    , m_intensity(Parameter::ToInt(intensity, 0, [&] {
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Light intensity from parameters: '%s'. Using 0.",
                                 qPrintable(intensity)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Light: %d", m_intensity);
}

bool Light::Run()
{
    const bool on = m_intensity != 0;
    if (on && !LightManager::SetIntensity(static_cast<uint>(m_intensity)).IsAccepted())
    {
        OZNA_LOG(LEVEL_ERROR, "SetIntensity(%d) request error", m_intensity);
        return false;
    }
    if (!LightManager::Switch(on).IsAccepted())
    {
        OZNA_LOG(LEVEL_ERROR, "Switch(%d) request error", on);
        return false;
    }
    OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | Light: %d", on);
    return true;
}
