#include "LineNotes.h"

#include "DaysText.h"
#include "StartText.h"
#include "text/ScheduleFields.h"
#include "text/StringUtils.h"
#include "text/TextFile.h"

#include <QStringList>

#include <optional>

namespace
{

// Whether it would be an entry without the sign behind its first field.
bool IsHiddenEntry(const ScheduleLine& line)
{
    const qsizetype sign = line.text.indexOf(TextFile::COMMENT_SIGN);
    return line.isSkipped && sign >= 0 && line.text.left(sign).contains(QLatin1Char(ScheduleFields::FIELD_SEPARATOR)) &&
           StringUtils::CountTokens(line.text, ScheduleFields::FIELD_SEPARATOR) > ScheduleFields::FIELD_TASK;
}

QString TextOf(const ScheduleLine& line)
{
    if (IsHiddenEntry(line))
        return QStringLiteral("is a comment, as there is a \"#\" in it");
    if (line.action == nullptr)
        return {};
    const Action& action = *line.action;
    if (action.m_dow == 0 && !action.HasSpotDate())
        return QStringLiteral("is never due: it has no day");
    if (action.m_dow == 0 && DaysText::IsSpotImpossible(action))
        return QStringLiteral("is never due: there is no such spot date");
    if (action.m_hasFrom && action.m_hasTo && action.m_to < action.m_from)
        return QStringLiteral("is never due: its last date comes before its first");
    return StartText::Fate(action);
}

} // namespace

std::vector<LineNotes::Note> LineNotes::Of(const std::vector<ScheduleLine>& lines)
{
    std::vector<Note> notes;
    for (const ScheduleLine& line : lines)
    {
        if (const QString text = TextOf(line); !text.isEmpty())
            notes.push_back({line.number, text});
    }
    return notes;
}

std::vector<int> LineNotes::NotDue(const RehearsalResult& run)
{
    std::vector<int> numbers;
    for (const ScheduleLine& line : run.lines)
    {
        if (line.action != nullptr && !run.active.contains(line.number) && TextOf(line).isEmpty())
            numbers.push_back(line.number);
    }
    return numbers;
}

QString LineNotes::Numbers(const std::vector<int>& lines)
{
    QStringList parts;
    for (size_t first = 0; first < lines.size();)
    {
        size_t last = first;
        while (last + 1 < lines.size() && lines[last + 1] == lines[last] + 1)
            ++last;
        // Two in a row are no range.
        if (last == first + 1)
            last = first;
        parts.append(QString::number(lines[first]) +
                     (last == first ? QString() : QStringLiteral(" to %1").arg(lines[last])));
        first = last + 1;
    }
    return (lines.size() == 1 ? QStringLiteral("line ") : QStringLiteral("lines ")) + parts.join(QStringLiteral(", "));
}
