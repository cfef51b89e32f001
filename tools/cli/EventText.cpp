#include "EventText.h"

#include "Moment.h"
#include "peers/NetworkManager.h"
#include "peers/SoundManager.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace
{

struct KindRow
{
    EventKind kind;
    const char* name;
};

constexpr std::array KINDS{
    KindRow{EventKind::START, "start"},   KindRow{EventKind::SKIPPED, "skipped"},   KindRow{EventKind::LOST, "lost"},
    KindRow{EventKind::MISSED, "missed"}, KindRow{EventKind::FOLLOWUP, "followup"},
};

constexpr bool IsIndexedByKind()
{
    for (size_t i = 0; i < KINDS.size(); ++i)
    {
        if (KINDS[i].kind != static_cast<EventKind>(i))
            return false;
    }
    return true;
}

static_assert(IsIndexedByKind(), "a row stands at the place of its kind");

const QString ON = QStringLiteral("on");
const QString OFF = QStringLiteral("off");

// What the methods without arguments switch; empty for those that switch nothing.
QString Switched(const QString& method)
{
    if (method == QLatin1String(SoundManager::PLAY_AUX))
        return ON;
    return method == QLatin1String(NetworkManager::DISABLE_LAN) ? OFF : QString();
}

const QString PLAYING = QStringLiteral("playing");

} // namespace

QString EventText::KindName(EventKind kind)
{
    return QLatin1String(KINDS[static_cast<size_t>(kind)].name);
}

QString EventText::Mark(const Event& event, qint64 from_ms)
{
    if (event.kind != EventKind::START)
        return event.kind == EventKind::FOLLOWUP ? QString() : KindName(event.kind);
    QStringList marks;
    if (event.moment_ms < from_ms)
        marks.append(PLAYING);
    if (event.isForced)
        marks.append(QStringLiteral("forced"));
    else if (event.delay_s > 0)
        marks.append(QStringLiteral("late"));
    if (event.isRepeated)
        marks.append(QStringLiteral("repeated"));
    return marks.join(QStringLiteral(", "));
}

QString EventText::Risk(const Event& event)
{
    if (event.riskLine == 0)
        return {};
    return QStringLiteral("missed if the peer of line %1 does not answer: the daemon then waits until %2")
        .arg(event.riskLine)
        .arg(Moment::TimeText(event.riskUntil_ms));
}

QString EventText::Subject(const Event& event)
{
    const auto request = std::ranges::find_if(event.requests, [](const Request& candidate) {
        return candidate.method != QLatin1String(SoundManager::SET_PLAYER_VOLUME) && !candidate.arguments.isEmpty();
    });
    if (request == event.requests.end())
        return event.requests.isEmpty() ? QString() : Switched(event.requests.first().method);
    const QStringList texts = request->ArgumentTexts();
    QString first = request->arguments[0].toString();
    if (request->method == QLatin1String(SoundManager::PLAY_PLAYLIST))
    {
        const uint track = request->arguments.value(2).toUInt();
        return track > 1 ? QStringLiteral("%1 from track %2").arg(first, QString::number(track)) : first;
    }
    if (request->method == QLatin1String(SoundManager::PLAY_FILE) ||
        request->method == QLatin1String(SoundManager::PLAY_STREAM))
        return first;
    if (request->method == QLatin1String(SoundManager::RADIO_FM_SET_FREQUENCY))
        return texts[0] + QStringLiteral(" MHz");
    if (request->method == QLatin1String(SoundManager::STOP_PLAY) && first == QLatin1String(SoundManager::SOURCE_AUX))
        return OFF;
    if (request->method == QLatin1String(SoundManager::STOP_PLAY))
        return request->arguments.value(1).toString();
    if (request->arguments[0].typeId() == QMetaType::Bool)
        return request->arguments[0].toBool() ? ON : OFF;
    return texts.join(QStringLiteral(", "));
}
