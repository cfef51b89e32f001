#include "Subjects.h"

#include "peers/SoundManager.h"

#include <algorithm>

namespace
{

// Where the arguments stand.
constexpr int PLAYLIST_TRACK = 2;
constexpr int STOP_IDENTIFIER = 1;

} // namespace

const Request* Subjects::Find(const Requests& requests, const char* method)
{
    const auto found = std::ranges::find_if(
        requests, [method](const Request& request) { return request.method == QLatin1String(method); });
    return found != requests.end() ? &*found : nullptr;
}

QVariant Subjects::Argument(const Requests& requests, int place)
{
    return requests.isEmpty() ? QVariant() : requests.last().arguments.value(place);
}

QString Subjects::OnOrOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

QString Subjects::Value(const Requests& requests)
{
    if (requests.isEmpty() || requests.first().arguments.isEmpty())
        return {};
    const QVariant& first = requests.first().arguments[0];
    return first.typeId() == QMetaType::Bool ? OnOrOff(first.toBool())
                                             : requests.first().ArgumentTexts().join(QStringLiteral(", "));
}

QString Subjects::Source(const Requests& requests)
{
    return Argument(requests).toString();
}

uint Subjects::Track(const Requests& requests)
{
    return Argument(requests, PLAYLIST_TRACK).toUInt();
}

QString Subjects::FromTrack(const Requests& requests)
{
    const uint track = Track(requests);
    return track > 1 ? QStringLiteral("from track %1").arg(track) : QString();
}

QString Subjects::PlaylistAndTrack(const Requests& requests)
{
    return (Source(requests) + u' ' + FromTrack(requests)).trimmed();
}

QString Subjects::RadioFrequency(const Requests& requests)
{
    const Request* const tuning = Find(requests, SoundManager::RADIO_FM_SET_FREQUENCY);
    return tuning != nullptr ? tuning->ArgumentTexts().value(0) + QStringLiteral(" MHz") : QString();
}

QString Subjects::LanSwitch(const Requests& requests)
{
    return requests.isEmpty() ? QString() : OnOrOff(!requests.first().arguments.isEmpty());
}

QString Subjects::AuxiliarySwitch(const Requests& requests)
{
    return requests.isEmpty() ? QString() : OnOrOff(Find(requests, SoundManager::PLAY_AUX) != nullptr);
}

QString Subjects::StoppedIdentifier(const Requests& requests)
{
    return Argument(requests, STOP_IDENTIFIER).toString();
}
