#pragma once

#include <QString>
#include <QStringList>

// How a line of a schedule is cut into fields, its start time into parts, and its last field into parameters.
namespace ScheduleFields
{

// In order; the parameters may be missing.
enum Field : int
{
    FIELD_DAYS,
    FIELD_START_TIME,
    FIELD_DAY,
    FIELD_MONTH,
    FIELD_YEAR,
    FIELD_FROM,
    FIELD_TO,
    FIELD_TASK,
    FIELD_PARAMETERS,
    FIELD_COUNT,
};

inline constexpr char FIELD_SEPARATOR = '|';
inline constexpr char TIME_SEPARATOR = ':';
inline constexpr char PARAMETER_SEPARATOR = ',';
inline constexpr int TIME_PARTS = 3;
inline constexpr int MOST_PARAMETERS = 16; // no kind reads as many; more cost no memory
inline constexpr int DAYS_A_WEEK = 7;

// Of a spot field: no restriction.
inline constexpr int ANY = -1;

// The text of the parameters. fields: the first FIELD_COUNT of the fieldCount that a line has.
// Any count but FIELD_COUNT, ten fields and more included, leaves the task without parameters.
[[nodiscard]] inline QString ParameterText(const QStringList& fields, qsizetype fieldCount)
{
    return fieldCount == FIELD_COUNT ? fields[FIELD_PARAMETERS] : QString();
}

} // namespace ScheduleFields
