#include "EventText.h"

#include "Kinds.h"
#include "base/Moment.h"

#include <QStringList>

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

const QString PLAYING = QStringLiteral("playing");

} // namespace

QString EventText::KindName(EventKind kind)
{
    return QLatin1String(KINDS[static_cast<size_t>(kind)].name);
}

QString EventText::Mark(const Event& event, qint64 from_ms)
{
    if (event.kind == EventKind::FOLLOWUP)
        return {};
    QStringList marks;
    if (event.kind != EventKind::START)
        marks.append(KindName(event.kind));
    else if (event.moment_ms < from_ms)
        marks.append(PLAYING);
    if (event.isForced)
        marks.append(QStringLiteral("forced"));
    else if (event.delay_s > 0)
        marks.append(QStringLiteral("late"));
    if (event.isRepeated)
        marks.append(QStringLiteral("repeated"));
    if (event.IsByChance())
        marks.append(QStringLiteral("by chance"));
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

QString EventText::Untimed(const Event& event)
{
    return event.IsUntimed() ? QStringLiteral("told no start time, it may play at once") : QString();
}

QString EventText::Subject(const Event& event)
{
    return Kinds::Of(event.type).subject(event.requests);
}
