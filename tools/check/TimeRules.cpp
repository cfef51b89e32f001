#include "Rules.h"

#include "engine/StartTime.h"
#include "peers/SoundManager.h"
#include "words/StartText.h"

using namespace ScheduleFields;

namespace
{

const QString FORMAT = QStringLiteral("HH:mm:ss");
const QString EXISTING = QStringLiteral("write a time from 00:00:03 to 23:59:59");

Finding New(const Entry& entry, FindingKind kind, const QString& text, const QString& advice)
{
    return {entry.line.number, kind, Entry::FieldName(FIELD_START_TIME), text, advice};
}

// What becomes of a time that is not the one that is written.
QString CountsAs(const Action& action, const QString& meant)
{
    const bool isReal = action.m_startTime.isValid();
    if (!action.IsPrepared())
        return QStringLiteral(", and counts as %1%2")
            .arg(meant, !isReal && StartTime::IsForcedByEveryLoad(action)
                            ? QStringLiteral(", but as midnight when the schedule is loaded")
                            : QString());
    return QStringLiteral(": it starts at %1%2, but the player gets an empty start time")
        .arg(meant, !isReal && StartTime::IsFoundAtMidnight(action)
                        ? QStringLiteral(", and may start at midnight, once after a load")
                        : QString());
}

// What becomes of the time that it counts as.
QString AndThen(const Action& action)
{
    const QString fate = StartText::Fate(action);
    return fate.isEmpty() ? QString() : QStringLiteral("; it ") + fate;
}

Finding OutOfRange(const Entry& entry)
{
    const Action& action = *entry.GetAction();
    const QString given = entry.Field(FIELD_START_TIME);
    const QTime time = StartTime::Of(action);
    if (!time.isValid())
        return New(entry, FindingKind::TIME_RANGE,
                   QStringLiteral("%1 is no time of a day: it %2").arg(given, StartText::Fate(action)), EXISTING);
    const QString meant = time.toString(FORMAT);
    return New(entry, FindingKind::TIME_RANGE,
               QStringLiteral("%1 does not exist%2%3").arg(given, CountsAs(action, meant), AndThen(action)),
               QStringLiteral("write %1").arg(meant));
}

void LookAtMidnight(const Entry& entry, Findings& findings)
{
    const Action& action = *entry.GetAction();
    const StartTime::Fate fate = StartTime::FateOf(action);
    if (fate == StartTime::Fate::NEVER)
        findings.Add(New(entry, FindingKind::MIDNIGHT,
                         QStringLiteral("at midnight sharp it %1").arg(StartText::Fate(action)),
                         QStringLiteral("write 00:00:03 or later, or 23:59:59")));
    else if (fate == StartTime::Fate::BY_CHANCE)
        findings.Add(New(entry, FindingKind::AFTER_MIDNIGHT,
                         QStringLiteral("so close to midnight it %1").arg(StartText::Fate(action)),
                         QStringLiteral("write 00:00:03 or later")));
}

} // namespace

void Rules::FindOddTimes(const std::vector<Entry>& entries, Findings& findings)
{
    for (const Entry& entry : entries)
    {
        const Action* const action = entry.GetAction();
        if (action == nullptr)
            continue;
        if (!action->m_startTime.isValid())
        {
            findings.Add(OutOfRange(entry));
            continue;
        }
        if (!SoundManager::ParseTime(entry.Field(FIELD_START_TIME)).isValid())
        {
            const QString meant = action->m_startTime.toString(FORMAT);
            findings.Add(New(entry, FindingKind::TIME_FORM,
                             QStringLiteral("is not written hh:mm:ss%1").arg(CountsAs(*action, meant)),
                             QStringLiteral("write %1").arg(meant)));
        }
        LookAtMidnight(entry, findings);
    }
}
