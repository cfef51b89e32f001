#include "Rules.h"
#include "Startable.h"

#include "engine/EarlyLoads.h"
#include "words/EarlyText.h"

#include <QSet>

namespace
{

// A planner knows the daemon by what they do with the device.
const QString ONCE = QStringLiteral("this comes once after such a load, when the device starts or gets a schedule: ");

} // namespace

void Rules::FindEarlyLoads(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries,
                           const QDate& today, Findings& findings)
{
    QSet<int> misread;
    for (const Entry& entry : entries)
    {
        if (entry.GetAction() != nullptr && !Startable::MisreadTime(entry).isEmpty())
            misread.insert(entry.line.number);
    }
    for (const EarlyLoads::Early& early : EarlyLoads::Of(lines, today))
    {
        if (misread.contains(early.line))
            continue;
        findings.Add(
            {early.line, FindingKind::EARLY_LOAD, Entry::FieldName(ScheduleFields::FIELD_START_TIME),
             EarlyText::Of(early),
             early.isPlaylist
                 ? ONCE + QStringLiteral("load the schedule on one of the line's days")
                 : ONCE +
                       QStringLiteral("load the schedule at another time, or add a line of 00:00:03 on the line's days "
                                      "that sets what is to be in force from midnight on")});
    }
}
