#include "Columns.h"

#include "Entry.h"
#include "Findings.h"

#include <algorithm>

using namespace ScheduleFields;

namespace
{

Field FieldCalled(const QString& name)
{
    int field = 0;
    while (field < FIELD_COUNT && Entry::FieldName(static_cast<Field>(field)) != name)
        ++field;
    return static_cast<Field>(field);
}

// The column at which a part begins, counted from 0, of those from begin on.
int OfPart(QStringView text, qsizetype begin, char separator, qsizetype place)
{
    for (; place > 0; --place)
    {
        const qsizetype end = text.indexOf(QLatin1Char(separator), begin);
        if (end < 0)
            return Columns::At(text, text.size());
        begin = end + 1;
    }
    qsizetype first = begin;
    while (first < text.size() && text[first].isSpace())
        ++first;
    const bool isEmpty = first == text.size() || text[first] == QLatin1Char(separator);
    return Columns::At(text, isEmpty ? begin : first);
}

} // namespace

int Columns::At(QStringView text, qsizetype position)
{
    const QStringView before = text.first(std::min(position, text.size()));
    // Of a character beyond 16 bits the second half does not count.
    const auto halves = std::ranges::count_if(before, [](QChar sign) { return sign.isLowSurrogate(); });
    return static_cast<int>(before.size() - halves) + 1;
}

int Columns::OfField(QStringView text, const QString& name)
{
    const Field field = FieldCalled(name);
    return OfPart(text, 0, FIELD_SEPARATOR, field == FIELD_COUNT ? 0 : field);
}

int Columns::OfParameter(QStringView text, qsizetype place)
{
    qsizetype begin = 0;
    for (int field = 0; field < FIELD_PARAMETERS; ++field)
    {
        begin = text.indexOf(QLatin1Char(FIELD_SEPARATOR), begin) + 1;
        if (begin == 0)
            return At(text, text.size());
    }
    return OfPart(text, begin, PARAMETER_SEPARATOR, place);
}

void Columns::Fill(const std::vector<ScheduleLine>& lines, Findings& findings)
{
    findings.Change([&](Finding& finding) {
        if (finding.column == 0)
            finding.column = OfField(lines.at(static_cast<size_t>(finding.line) - 1).text, finding.field);
    });
}
