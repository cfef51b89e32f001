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
    qsizetype begin = 0;
    for (int before = 0; field != FIELD_COUNT && before < field; ++before)
    {
        const qsizetype separator = text.indexOf(QLatin1Char(FIELD_SEPARATOR), begin);
        if (separator < 0)
            return At(text, text.size());
        begin = separator + 1;
    }
    qsizetype first = begin;
    while (first < text.size() && text[first].isSpace())
        ++first;
    const bool isEmpty = first == text.size() || text[first] == QLatin1Char(FIELD_SEPARATOR);
    return At(text, isEmpty ? begin : first);
}

void Columns::Fill(const std::vector<ScheduleLine>& lines, Findings& findings)
{
    findings.Change([&](Finding& finding) {
        if (finding.column == 0)
            finding.column = OfField(lines.at(static_cast<size_t>(finding.line) - 1).text, finding.field);
    });
}
