#include "LineFields.h"

#include "StringUtils.h"

using ScheduleFields::FIELD_SEPARATOR;

LineFields::LineFields(const QString& line)
    : m_text(line.toLatin1())
    , m_count(StringUtils::CountTokens(line, FIELD_SEPARATOR))
{
    StringUtils::TokenReader reader(QLatin1String(m_text), FIELD_SEPARATOR);
    for (QLatin1String& field : m_fields)
    {
        if (!reader.Next(field))
            break;
    }
}
