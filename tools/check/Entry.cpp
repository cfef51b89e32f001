#include "Entry.h"

#include "TaskTable.h"
#include "text/LineFields.h"
#include "text/StringUtils.h"

#include <array>

using namespace ScheduleFields;

namespace
{

constexpr std::array NAMES{"days", "start time", "day", "month", "year", "from", "to", "task", "parameters", "line"};
static_assert(NAMES.size() == FIELD_COUNT + 1, "every field has a name");

} // namespace

bool Entry::Is(TaskType type) const
{
    return line.action != nullptr && line.action->m_task->m_type == type;
}

QString Entry::TaskName() const
{
    const TaskKind* const kind = line.action != nullptr ? TaskTable::Find(line.action->m_task->m_type) : nullptr;
    return kind != nullptr && kind->scheduleName != nullptr ? QString::fromLatin1(kind->scheduleName)
                                                            : Field(FIELD_TASK);
}

QString Entry::FieldName(ScheduleFields::Field field)
{
    return QString::fromLatin1(NAMES.at(static_cast<size_t>(field)));
}

std::vector<Entry> Entry::Of(std::vector<ScheduleLine>& lines)
{
    std::vector<Entry> entries;
    for (ScheduleLine& line : lines)
    {
        if (line.isSkipped)
            continue;
        const LineFields fields(line.text);
        entries.push_back(
            {line, fields.Count(), StringUtils::FirstTokens(line.text, FIELD_SEPARATOR, FIELD_COUNT),
             StringUtils::FirstTokens(QString(fields.Parameters()), PARAMETER_SEPARATOR, MOST_PARAMETERS)});
    }
    return entries;
}
