#include "LineFields.h"

#include "StringUtils.h"

using ScheduleFields::FIELD_SEPARATOR;

namespace
{

// The line up to the separator behind the last field that is kept.
QStringView Kept(QStringView line)
{
    qsizetype end = -1;
    for (int field = 0; field < ScheduleFields::FIELD_COUNT; ++field)
    {
        end = line.indexOf(QLatin1Char(FIELD_SEPARATOR), end + 1);
        if (end < 0)
            return line;
    }
    return line.first(end);
}

} // namespace

LineFields::LineFields(const QString& line)
    : m_count(StringUtils::CountTokens(line, FIELD_SEPARATOR))
    , m_text(m_count > ScheduleFields::FIELD_TASK ? Kept(line).toLatin1() : QByteArray())
{
    StringUtils::TokenReader reader(QLatin1String(m_text), FIELD_SEPARATOR);
    for (QLatin1String& field : m_fields)
    {
        if (!reader.Next(field))
            break;
    }
}
