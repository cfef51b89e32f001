#pragma once

#include "ScheduleFields.h"

#include <QByteArray>
#include <QString>

#include <array>

// The fields of one line of a schedule, trimmed, as 8-bit text that stands in one copy of them: characters beyond
// Latin-1 are "?". A line may be as long as a file: one that lacks fields is not copied, and of one with more only
// those that are kept are.
class LineFields final
{
public:
    explicit LineFields(const QString& line);

    LineFields(const LineFields&) = delete;
    LineFields& operator=(const LineFields&) = delete;

    // How many fields the line has, also more than are kept.
    [[nodiscard]] qsizetype Count() const { return m_count; }

    // Empty where the line lacks fields that every action needs. Lives as long as this object.
    [[nodiscard]] QLatin1String operator[](ScheduleFields::Field field) const
    {
        return m_fields[static_cast<size_t>(field)];
    }

    // The text of the parameters: any count but FIELD_COUNT, ten fields and more included, leaves the task without.
    [[nodiscard]] QLatin1String Parameters() const
    {
        return m_count == ScheduleFields::FIELD_COUNT ? (*this)[ScheduleFields::FIELD_PARAMETERS] : QLatin1String();
    }

private:
    const qsizetype m_count;
    const QByteArray m_text;
    std::array<QLatin1String, ScheduleFields::FIELD_COUNT> m_fields;
};
