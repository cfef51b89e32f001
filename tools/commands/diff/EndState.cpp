#include "EndState.h"

#include "engine/RehearsalResult.h"
#include "peers/CpuFreqManager.h"
#include "peers/GpsManager.h"
#include "peers/LightManager.h"
#include "peers/NetworkManager.h"
#include "peers/PhotoManager.h"
#include "peers/SoundManager.h"
#include "words/EventText.h"
#include "words/Kinds.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace
{

struct Setting
{
    const char* method;
    const char* name;   // "%1" stands for the first argument, where the value comes second
    const char* format; // of the value, which is its last argument
};

constexpr const char* VALUE = "%1";

constexpr std::array SETTINGS{
    Setting{SoundManager::SET_MASTER_VOLUME, "master volume", VALUE},
    Setting{SoundManager::SET_PLAYER_VOLUME, "volume of the %1 player", VALUE},
    Setting{SoundManager::SET_AMPLIFIERS, "amplifiers", VALUE},
    Setting{SoundManager::RADIO_FM_SET_FREQUENCY, "radio frequency", "%1 MHz"},
    Setting{LightManager::SET_INTENSITY, "light intensity", VALUE},
    Setting{LightManager::SWITCH, "light", VALUE},
    Setting{PhotoManager::ENABLE_CAMERA, "camera", VALUE},
    Setting{GpsManager::SET_ENABLED, "GPS receiver", VALUE},
    Setting{NetworkManager::ENABLE_LAN, "LAN", "on"},
    Setting{NetworkManager::DISABLE_LAN, "LAN", "off"},
    Setting{CpuFreqManager::SET_FREQ, "processor frequency", "%1 MHz"},
};

QString Shown(const QVariant& value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("on") : QStringLiteral("off");
    return value.typeId() == QMetaType::UChar ? QString::number(value.toUInt()) : value.toString();
}

} // namespace

void EndState::Take(const Request& request, bool isByChance)
{
    const auto* const setting =
        std::ranges::find_if(SETTINGS, [&](const Setting& row) { return request.method == QLatin1String(row.method); });
    if (setting == SETTINGS.end())
        return;
    const QString name = QString::fromLatin1(setting->name);
    const QString format = QString::fromLatin1(setting->format);
    const bool hasValue = format.contains(QLatin1String(VALUE)) && !request.arguments.isEmpty();
    m_settings[name.contains(QLatin1String(VALUE)) ? name.arg(request.arguments.value(0).toString()) : name] =
        (hasValue ? format.arg(Shown(request.arguments.last())) : format) +
        (isByChance ? QStringLiteral(", by chance") : QString());
}

EndState::Values EndState::At(const RehearsalResult& run) const
{
    QStringList playing;
    for (const Event& event : run.events)
    {
        if (event.plays && (event.end_ms == Event::OPEN || event.end_ms > run.end_ms))
            playing.append(
                (QString::fromLatin1(Kinds::Of(event.type).label) + u' ' + EventText::Subject(event)).trimmed());
    }
    Values values = m_settings;
    if (!playing.isEmpty())
        values[PLAYING] = playing.join(QStringLiteral(", "));
    return values;
}
