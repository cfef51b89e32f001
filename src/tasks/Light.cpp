#include "Light.h"

#include "Log.h"
#include "Scheduler.h"
#include "peers/PeerCall.h"
#include "text/Parameter.h"

#include <LightManagerProxy.h>

namespace
{
const QString SET_INTENSITY = QStringLiteral("SetIntensity");
const QString SWITCH = QStringLiteral("Switch");
} // namespace

Light::Light(const QString& intensity)
    : PunctualTask(TASK_LIGHT, {})
    , m_intensity(Parameter::ToInt(intensity, 0, [&] {
        OZNA_LOG(LEVEL_WARNING, "Can't parse Light intensity from parameters: '%s'. Using 0.", qPrintable(intensity));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Light: %d", m_intensity);
}

bool Light::Run()
{
    const bool on = m_intensity != 0;
    if (on && !PeerCall::Send(Scheduler::m_lightManProxy, SET_INTENSITY, {static_cast<uint>(m_intensity)}).IsAccepted())
    {
        OZNA_LOG(LEVEL_ERROR, "SetIntensity(%d) request error", m_intensity);
        return false;
    }
    if (!PeerCall::Send(Scheduler::m_lightManProxy, SWITCH, {on}).IsAccepted())
    {
        OZNA_LOG(LEVEL_ERROR, "Switch(%d) request error", on);
        return false;
    }
    OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | Light: %d", on);
    return true;
}
