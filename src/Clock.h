#pragma once

#include <QDate>
#include <QTime>

#include <cstdint>
#include <ctime>
#include <functional>

// The one place that reads the time. Every value is made of one reading of the C library's calendar time and its
// time-zone rules, looked up anew at each call: clock steps and changes of time zone show at once, and
// 64-bit calendar time carries past 2038 on a 32-bit processor too.
// Used from the event-loop thread only.
class Clock
{
public:
    // Milliseconds since 1970-01-01 00:00:00 UTC.
    using Source = std::function<std::int64_t()>;

    // Replaces the system clocks by virtual ones; an empty source restores them. uptime: of the machine, which calendar
    // steps do not move; if none is given it follows the calendar.
    static void SetSource(Source calendar, Source uptime = {});

    // The clocks at one moment, in milliseconds.
    struct Reading
    {
        std::int64_t local_ms;    // the local time, counted from 1970-01-01 00:00:00 local time
        std::int64_t calendar_ms; // since 1970-01-01 00:00:00 UTC
        std::int64_t uptime_ms;   // since the machine started, time in suspension included
    };
    static Reading Read();
    static std::int64_t Uptime_ms();

    // Whether the clock on the wall just runs on for more than a day around that moment: neither the offset to UTC nor
    // daylight saving changes. SecondsTo is a plain difference of times of day then. now: the reading made last, whose
    // time zone is asked.
    static bool IsSteady(const Reading& now);

    // The current calendar time, in seconds.
    static std::time_t Now();

    // The current time, broken down to local time.
    static std::tm LocalNow();

    // The milliseconds of the current second that have passed, rounded down.
    static int IntoSecond_ms();

    // The current local time of day, with milliseconds.
    static QTime TimeOfDay();

    static QDate LocalToday();
    static QDate UtcToday();

    // The UTC date when the wall clock shows that local date and time.
    static QDate UtcDateAt(const QDate& local, const QTime& time);

    // Seconds until today's local date at the given time of day, negative when it is past. Values out of range carry
    // over, and the daylight-saving state is that of now. Differences that no int holds are clamped.
    static int SecondsTo(int hour, int minute, int second);

    // Whole seconds since the wall clock last showed time: a time later in the day counts as yesterday's, also when it
    // is less than a second ahead. From 0 to 86400. An invalid time counts as 00:00:00.
    static int SecondsSince(QTime time);
};
