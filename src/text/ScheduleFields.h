#pragma once

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

} // namespace ScheduleFields
