#include "Rules.h"

#include "Moment.h"
#include "SoundManager.h"

using namespace ScheduleFields;

namespace
{

const QString FORMAT = QStringLiteral("HH:mm:ss");
const QString EXISTING = QStringLiteral("write a time from 00:00:03 to 23:59:59");
constexpr int MINUTE_S = 60;
constexpr int HOUR_S = 3600;

Finding New(const Entry& entry, FindingKind kind, const QString& text, const QString& advice)
{
    return {entry.line.number, kind, Entry::FieldName(FIELD_START_TIME), text, advice};
}

Finding OutOfRange(const Entry& entry)
{
    const Action& action = *entry.GetAction();
    const qint64 second = qint64{action.m_hour} * HOUR_S + qint64{action.m_minute} * MINUTE_S + qint64{action.m_second};
    const QString given = entry.Field(FIELD_START_TIME);
    if (second < 0 || second >= Moment::DAY_S)
        return New(entry, FindingKind::TIME_RANGE,
                   QStringLiteral("%1 is no time of a day: it does not start then").arg(given), EXISTING);
    const QString meant = QTime(0, 0).addSecs(static_cast<int>(second)).toString(FORMAT);
    return New(entry, FindingKind::TIME_RANGE, QStringLiteral("%1 does not exist, and counts as %2").arg(given, meant),
               QStringLiteral("write %1").arg(meant));
}

void LookAtMidnight(const Entry& entry, Findings& findings)
{
    const Action& action = *entry.GetAction();
    const int second = QTime(0, 0).secsTo(action.m_startTime);
    // What may start late is found late.
    if (second > Action::IN_TIME_S || action.m_task->GetDelayable_s() > 0)
        return;
    if (second == 0)
        findings.Add(New(entry, FindingKind::MIDNIGHT, QStringLiteral("at midnight sharp it never starts"),
                         QStringLiteral("write 00:00:03 or later, or 23:59:59")));
    else
        findings.Add(New(entry, FindingKind::AFTER_MIDNIGHT,
                         QStringLiteral("so close to midnight it starts on some days only, by luck"),
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
                             action->IsPrepared()
                                 ? QStringLiteral("is not written hh:mm:ss: it starts at %1, but the player gets an "
                                                  "empty start time")
                                       .arg(meant)
                                 : QStringLiteral("is not written hh:mm:ss, and counts as %1").arg(meant),
                             QStringLiteral("write %1").arg(meant)));
        }
        LookAtMidnight(entry, findings);
    }
}
