#include "LightObject.h"

#include "PlayerLog.h"
#include "Status.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr uint FULL = 100; // percent
}

LightObject::LightObject(const QStringList& names, const QStringList& folders)
    : m_intensity(FULL)
{
    for (const QString& name : names)
    {
        if (const std::optional<SystemOutput> output = SystemOutput::Find(name, folders))
            m_outputs.append(*output);
        else
            PLAYER_LOG(LEVEL_WARNING, "There is no light %s in %s", qPrintable(name),
                       qPrintable(folders.join(QStringLiteral(" or "))));
    }
    // It goes on from what the lights show.
    for (const SystemOutput& output : std::as_const(m_outputs))
    {
        const double percent = output.Get().value_or(0);
        if (percent > 0 && !m_isOn)
            m_intensity = std::max(static_cast<uint>(std::lround(percent)), 1U);
        m_isOn = m_isOn || percent > 0;
    }
}

LightObject::~LightObject() = default;

int LightObject::GetIntensity(uint& intensity)
{
    intensity = m_intensity;
    return static_cast<int>(Status::ACCEPTED);
}

int LightObject::GetSwitch(bool& on)
{
    on = m_isOn;
    return static_cast<int>(Status::ACCEPTED);
}

int LightObject::SetIntensity(uint intensity)
{
    m_intensity = std::min(intensity, FULL);
    Q_EMIT LedStatus(m_intensity);
    return Show();
}

int LightObject::Switch(bool on)
{
    m_isOn = on;
    Q_EMIT LedSwitch(on);
    return Show();
}

int LightObject::Show() const
{
    if (m_outputs.isEmpty())
    {
        PLAYER_LOG(LEVEL_ERROR, "No light is there to be switched");
        return static_cast<int>(Status::NOT_SET_UP);
    }
    bool isShown = true;
    for (const SystemOutput& output : m_outputs)
        isShown = output.Set(m_isOn ? m_intensity : 0) && isShown;
    return static_cast<int>(isShown ? Status::ACCEPTED : Status::CANNOT_SWITCH);
}
