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

// text with another part between the separators, without the blanks at its ends. place: counted from 0.
QString WithPart(const QString& text, char separator, qsizetype place, const QString& part)
{
    qsizetype begin = 0;
    for (qsizetype before = 0; before < place; ++before)
        begin = text.indexOf(QLatin1Char(separator), begin) + 1;
    qsizetype end = text.indexOf(QLatin1Char(separator), begin);
    if (end < 0)
        end = text.size();
    while (begin < end && text[begin].isSpace())
        ++begin;
    while (begin < end && text[end - 1].isSpace())
        --end;
    return text.left(begin) + part + text.mid(end);
}

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

QString Entry::With(ScheduleFields::Field field, const QString& text) const
{
    return With(line.text, field, text);
}

QString Entry::With(const QString& line, ScheduleFields::Field field, const QString& text)
{
    return WithPart(line, FIELD_SEPARATOR, field, text);
}

QString Entry::WithParameter(qsizetype place, const QString& text) const
{
    const QString part = line.text.section(QLatin1Char(FIELD_SEPARATOR), FIELD_PARAMETERS, FIELD_PARAMETERS);
    return With(FIELD_PARAMETERS, WithPart(part, PARAMETER_SEPARATOR, place, text).trimmed());
}

QString Entry::FieldName(ScheduleFields::Field field)
{
    return QString::fromLatin1(NAMES.at(static_cast<size_t>(field)));
}

Entry Entry::Of(ScheduleLine& line)
{
    const LineFields fields(line.text);
    return {line, fields.Count(), StringUtils::FirstTokens(line.text, FIELD_SEPARATOR, FIELD_COUNT),
            StringUtils::FirstTokens(QString(fields.Parameters()), PARAMETER_SEPARATOR, MOST_PARAMETERS)};
}

std::vector<Entry> Entry::Of(std::vector<ScheduleLine>& lines)
{
    std::vector<Entry> entries;
    for (ScheduleLine& line : lines)
    {
        if (!line.isSkipped)
            entries.push_back(Of(line));
    }
    return entries;
}
