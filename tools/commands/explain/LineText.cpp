#include "LineText.h"

#include "engine/StartTime.h"
#include "engine/TaskRequests.h"
#include "peers/SoundManager.h"
#include "tasks/PlayPlaylist.h"
#include "text/StringUtils.h"
#include "words/DaysText.h"
#include "words/Kinds.h"
#include "words/StartText.h"

#include <QStringList>

#include <algorithm>

namespace
{

constexpr std::uint8_t WEEKEND = 0x41;

QString Days(const Action& action)
{
    QStringList parts;
    const QString spot = DaysText::Spot(action);
    if (action.m_dow == DaysText::EVERY_DAY)
        parts.append(DaysText::WeekDays(action.m_dow));
    else if (action.m_dow == WEEKEND)
        parts.append(QStringLiteral("at weekends"));
    else if (action.m_dow != 0)
        parts.append(QStringLiteral("on ") + DaysText::WeekDays(action.m_dow));
    if (!spot.isEmpty())
        parts.append(QStringLiteral("on %1 (the date in UTC)").arg(spot));
    return parts.isEmpty() ? QStringLiteral("never,") : parts.join(QStringLiteral(", and "));
}

QString Validity(const Action& action)
{
    if (action.m_hasFrom && action.m_hasTo)
        return QStringLiteral(", from %1 to %2").arg(DaysText::Date(action.m_from), DaysText::Date(action.m_to));
    if (action.m_hasFrom)
        return QStringLiteral(", from %1 on").arg(DaysText::Date(action.m_from));
    return action.m_hasTo ? QStringLiteral(", until %1").arg(DaysText::Date(action.m_to)) : QString();
}

QString Tracks(const Action& action, bool areTracksKnown)
{
    const auto* const playlist = qobject_cast<const PlayPlaylist*>(action.m_task.get());
    if (playlist == nullptr || !areTracksKnown)
        return {};
    const size_t count = playlist->Tracks().size();
    return count == 1 ? QStringLiteral(" (1 track)") : QStringLiteral(" (%1 tracks)").arg(count);
}

QStringList Notes(const ScheduleLine& line, const QList<Request>& requests, bool areTracksKnown)
{
    const Action& action = *line.action;
    QStringList notes;
    if (action.m_dow == 0 && DaysText::Spot(action).isEmpty())
        notes.append(QStringLiteral("No day of the week is marked, and there is no spot date."));
    else if (DaysText::IsSpotImpossible(action))
        notes.append(QStringLiteral("There is no such spot date."));
    if (action.m_hasFrom && action.m_hasTo && action.m_to < action.m_from)
        notes.append(QStringLiteral("Its last date comes before its first: it is never valid."));
    const bool isTime = StartTime::Of(action).isValid();
    if (const QString fate = StartText::Fate(action, areTracksKnown); !fate.isEmpty())
        notes.append((isTime ? QStringLiteral("At %1 it %2.") : QStringLiteral("%1 is no time of day: it %2."))
                         .arg(StartText::Time(action), fate));
    // What is written is none, and counts as one all the same.
    const QString found = StartText::FoundAtMidnight(action, areTracksKnown);
    if (isTime && !action.m_startTime.isValid() && !found.isEmpty())
        notes.append(QStringLiteral("The time does not exist: %1.").arg(found));
    if (isTime && !action.m_startTime.isValid() && StartTime::IsForcedByEveryLoad(action))
        notes.append(QStringLiteral("The time does not exist: a load starts it, as one of midnight."));
    const bool sendsNoTime = action.IsPrepared() && std::ranges::none_of(requests, [&](const Request& request) {
                                 return request.arguments.contains(SoundManager::FormatTime(action.m_startTime));
                             });
    if (sendsNoTime || (action.IsPrepared() && !action.m_startTime.isValid()))
        notes.append(QStringLiteral("The sound manager is told no start time: hh:mm:ss has two digits each."));
    for (const TaskWarning& warning : line.warnings)
        notes.append(QStringLiteral("The daemon warns: %1.")
                         .arg(warning.text.endsWith(u'.') ? warning.text.chopped(1) : warning.text));
    return notes;
}

QString Capitalised(const QString& text)
{
    return text.left(1).toUpper() + text.mid(1);
}

} // namespace

QString LineText::Of(const Workspace& workspace, const ScheduleLine& line, bool areTracksKnown)
{
    if (line.isSkipped)
        return line.text.trimmed().isEmpty()
                   ? QStringLiteral("A blank line, which the daemon skips.")
                   : QStringLiteral("A comment, which the daemon skips: a \"#\" stands before its last character.");
    Action& action = *line.action;
    const QList<Request> requests = TaskRequests::Of(workspace, action);
    const QString sentence = Capitalised(Days(action)) + QStringLiteral(" at ") + StartText::Time(action) +
                             Validity(action) + QStringLiteral(", ") +
                             Kinds::Of(action.m_task->m_type).phrase(*action.m_task, requests) +
                             Tracks(action, areTracksKnown) + u'.';
    return StringUtils::Harmless((QStringList(sentence) + Notes(line, requests, areTracksKnown)).join(u' '));
}
