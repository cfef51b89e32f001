#include "Rules.h"
#include "Startable.h"

#include "engine/StartTime.h"
#include "peers/SoundManager.h"
#include "words/StartText.h"

#include <algorithm>

using namespace ScheduleFields;

namespace
{

const QString FORMAT = QStringLiteral("HH:mm:ss");
const QString EXISTING = QStringLiteral("write a time from 00:00:03 to 23:59:59");

Finding New(const Entry& entry, FindingKind kind, const QString& text, const QString& advice)
{
    return {entry.line.number, kind, Entry::FieldName(FIELD_START_TIME), text, advice};
}

// time: the one to write.
Finding NewFor(const Entry& entry, FindingKind kind, const QString& text, const QString& time)
{
    Finding finding = New(entry, kind, text, QStringLiteral("write ") + time);
    finding.suggestion = entry.With(FIELD_START_TIME, time);
    return finding;
}

// When the request of a message or playlist goes out: on the day of its start, which time is.
QTime AskedFor(const QTime& time)
{
    return time.addSecs(-std::min(Action::PREPARED_AHEAD_S, QTime(0, 0).secsTo(time)));
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
    // A request ahead waits for its time only where it tells one.
    return QStringLiteral(": it is asked for at %1 with an empty start time, and may play at once, before %2%3")
        .arg(AskedFor(StartTime::Of(action)).toString(FORMAT), meant,
             !isReal && StartTime::IsFoundAtMidnight(action)
                 ? QStringLiteral("; it may start at midnight, too, once after a load")
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
    return NewFor(entry, FindingKind::TIME_RANGE,
                  QStringLiteral("%1 does not exist%2%3").arg(given, CountsAs(action, meant), AndThen(action)), meant);
}

// A time whose parts the daemon does not read as they are meant. written: that time.
Finding Misread(const Entry& entry, const QString& written)
{
    const Action& action = *entry.GetAction();
    const QTime time = StartTime::Of(action);
    return NewFor(entry, FindingKind::TIME_FORM,
                  QStringLiteral("\"%1\" is not written hh:mm:ss, and counts as %2")
                      .arg(entry.Field(FIELD_START_TIME),
                           time.isValid() ? time.toString(FORMAT) : QStringLiteral("no time of a day")),
                  written);
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
        const QString given = entry.Field(FIELD_START_TIME);
        const QString written = Startable::MisreadTime(entry);
        if (!written.isEmpty())
        {
            findings.Add(Misread(entry, written));
            continue;
        }
        if (!action->m_startTime.isValid())
        {
            findings.Add(OutOfRange(entry));
            continue;
        }
        if (!SoundManager::ParseTime(given).isValid())
        {
            const QString meant = action->m_startTime.toString(FORMAT);
            findings.Add(NewFor(entry, FindingKind::TIME_FORM,
                                QStringLiteral("is not written hh:mm:ss%1").arg(CountsAs(*action, meant)), meant));
        }
        LookAtMidnight(entry, findings);
    }
}
