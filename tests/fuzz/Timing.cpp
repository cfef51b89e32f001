#include "Action.h"
#include "ByteReader.h"
#include "Clock.h"
#include "Engine.h"
#include "FakeTask.h"
#include "Findings.h"
#include "Target.h"
#include "Zones.h"

#include <QDebug>

#include <array>
#include <limits>

using namespace Qt::StringLiterals;

// The questions an action answers by the clock. Input: zone, clock, start, dates and task as ByteReader takes them.

namespace
{

constexpr std::int64_t DAY_S = 86400;
constexpr std::int64_t HOUR_S = 3600;

// In milliseconds; an input adds to one of them.
constexpr std::array<std::int64_t, 10> MOMENTS{
    1715774400000, // May 2024
    0,
    -1,
    2147483647000,  // the last second of 32 bits
    -2147483648000, // the first
    4294967295000,
    253402300799000, // the last of year 9999
    -62135596800000, // year 1
    std::numeric_limits<std::int64_t>::min(),
    std::numeric_limits<std::int64_t>::max(),
};

constexpr std::array TYPES{TASK_PLAY_MESSAGE, TASK_PLAY_PLAYLIST, TASK_VOLUME, TASK_STOP_PLAYLIST};

struct Case
{
    explicit Case(const QByteArray& input);

    const Zone* zone = nullptr;
    std::int64_t now_ms = 0;
    std::unique_ptr<Action> action;
    FakeTask* task = nullptr; // the action's
};

std::int64_t Sum(std::int64_t moment, std::int64_t step)
{
    std::int64_t sum = 0;
    return __builtin_add_overflow(moment, step, &sum) ? moment : sum;
}

// Mostly a number that may be one of a time, sometimes any.
int TimePart(ByteReader& reader, int count)
{
    return reader.Below(4) == 0 ? reader.Int() : reader.Below(count);
}

Case::Case(const QByteArray& input)
    : action(std::make_unique<Action>(u"1111111|08:30:00|*|*|*|||StopMessage"_s))
{
    ByteReader reader(input);
    zone = &Zones::ALL[static_cast<size_t>(reader.Below(Zones::ALL.size()))];
    const std::int64_t moment = MOMENTS[static_cast<size_t>(reader.Below(MOMENTS.size()))];
    now_ms = Sum(moment, reader.LongInt());
    action->m_dow = reader.Byte() & 0x7fU;
    action->m_hour = TimePart(reader, 24);
    action->m_minute = TimePart(reader, 60);
    action->m_second = TimePart(reader, 60);
    action->m_startTime = QTime(action->m_hour, action->m_minute, action->m_second);
    action->m_day = reader.Flag() ? reader.Below(32) : -1;
    action->m_month = reader.Flag() ? reader.Below(13) : -1;
    action->m_year = reader.Flag() ? reader.Int() : -1;
    action->m_from = QDate::fromJulianDay(reader.Int());
    action->m_hasFrom = reader.Flag();
    action->m_to = QDate::fromJulianDay(reader.Int());
    action->m_hasTo = reader.Flag();
    action->m_forced = reader.Below(8) == 1;
    task = new FakeTask(TYPES[static_cast<size_t>(reader.Below(TYPES.size()))]);
    action->m_task.reset(task);
    task->m_tolerance_s = static_cast<unsigned int>(reader.Flag() ? reader.Int() : 0);
    task->m_running = reader.Below(8) == 1;
}

// The clock's answers, found a second way where there is one.
struct Now
{
    explicit Now(const Case& input);

    int toStart_s;
    int late_s;
    unsigned int weekDay;
    QDate localToday;
    QDate utcToday;
};

Now::Now(const Case& input)
    : toStart_s(Clock::SecondsTo(input.action->m_hour, input.action->m_minute, input.action->m_second))
    , late_s(Clock::SecondsSince(input.action->m_startTime))
    , weekDay(static_cast<unsigned int>(Clock::LocalNow().tm_wday))
    , localToday(Clock::LocalToday())
    , utcToday(Clock::UtcToday())
{
    const Action& action = *input.action;
    const QTime time = Clock::TimeOfDay();
    EXPECT_THAT(time.isValid(), QByteArray::number(input.now_ms));
    EXPECT_EQUAL(std::int64_t{time.msec()}, ((input.now_ms % 1000) + 1000) % 1000);
    EXPECT_THAT(late_s >= 0 && late_s <= DAY_S, QByteArray::number(late_s));
    // A time that does not exist counts as midnight.
    if (!action.m_startTime.isValid())
        EXPECT_EQUAL(std::int64_t{late_s}, time.hour() * HOUR_S + time.minute() * 60 + time.second());
    // The library and the C library count the years before the first differently.
    if (localToday.year() > 0)
        EXPECT_EQUAL(static_cast<int>(weekDay), localToday.dayOfWeek() % 7);
    EXPECT_THAT(std::abs(localToday.daysTo(utcToday)) <= 2, utcToday.toString().toUtf8());
    if (action.m_startTime.isValid())
    {
        const int ahead_ms = time.msecsTo(action.m_startTime);
        EXPECT_EQUAL(late_s, ahead_ms > 0 ? static_cast<int>(DAY_S) - ahead_ms / 1000 : -ahead_ms / 1000);
    }
    if (input.zone->isFixed)
    {
        const std::int64_t ahead_s = (std::int64_t{action.m_hour} - time.hour()) * HOUR_S +
                                     (std::int64_t{action.m_minute} - time.minute()) * 60 + action.m_second -
                                     time.second();
        EXPECT_EQUAL(std::int64_t{toStart_s}, std::clamp<std::int64_t>(ahead_s, std::numeric_limits<int>::min(),
                                                                       std::numeric_limits<int>::max()));
    }
}

bool Fits(int spot, int value)
{
    return spot == -1 || spot == value;
}

bool IsPrepared(const Task& task)
{
    return task.m_type == TASK_PLAY_MESSAGE || task.m_type == TASK_PLAY_PLAYLIST;
}

bool IsDue(const Action& action, const Now& now)
{
    const bool isDay = (action.m_dow >> now.weekDay & 1U) != 0;
    const bool hasSpot = action.m_day != -1 || action.m_month != -1 || action.m_year != -1;
    const bool isSpot = hasSpot && Fits(action.m_day, now.utcToday.day()) &&
                        Fits(action.m_month, now.utcToday.month()) && Fits(action.m_year, now.utcToday.year());
    const bool isTooSoon = action.m_hasFrom && now.localToday < action.m_from;
    const bool isOver = action.m_hasTo && now.localToday > action.m_to;
    return (isDay || isSpot) && !isTooSoon && !isOver;
}

bool IsEarly(const Case& input, const Now& now)
{
    const Action& action = *input.action;
    if (!IsDue(action, now) || input.task->m_running)
        return false;
    if (action.m_forced || (now.toStart_s > 0 && now.toStart_s < 13))
        return true;
    const auto tolerance_s = static_cast<int>(input.task->m_tolerance_s);
    return tolerance_s != 0 && tolerance_s >= now.late_s;
}

bool IsInTime(const Case& input, const Now& now)
{
    const int ahead_s = IsPrepared(*input.task) ? 8 : 0;
    return now.toStart_s >= -2 && now.toStart_s <= ahead_s;
}

void CheckStart(const Case& input)
{
    Action& action = *input.action;
    const int delay_s = action.m_delay;
    input.task->m_calls.clear();
    action.Start();
    EXPECT_EQUAL(input.task->m_calls, (QStringList{u"PrepareDelayed %1"_s.arg(delay_s), u"Run"_s}));
    EXPECT_THAT(!action.m_forced, "a start ends what forced it");
}

void Check(const Case& input)
{
    Action& action = *input.action;
    const Now now(input);
    const bool isEarly = IsEarly(input, now);
    EXPECT_EQUAL(action.IsEarly(), isEarly);
    EXPECT_EQUAL(action.IsEarly(), isEarly);

    const unsigned int tolerance_s = input.task->m_tolerance_s;
    const bool isOnTime = action.m_forced || IsInTime(input, now);
    const bool isReady = isOnTime || (tolerance_s != 0 && tolerance_s >= static_cast<unsigned int>(now.late_s));
    for (int again = 0; again < 2; ++again)
    {
        EXPECT_EQUAL(action.IsReady(), isReady);
        EXPECT_EQUAL(action.m_delay, isOnTime || tolerance_s == 0 ? 0 : now.late_s);
    }

    const bool isLost = action.IsLost();
    EXPECT_EQUAL(isLost, IsPrepared(*input.task) && now.toStart_s >= 1 && now.toStart_s <= 4);
    EXPECT_EQUAL(action.IsLost(), isLost);
    EXPECT_THAT(!isLost || isReady, "what can be lost is ready before");
    EXPECT_THAT(input.task->m_calls.isEmpty(), input.task->m_calls.join(u' ').toUtf8());
    CheckStart(input);
}

} // namespace

void Target::SetUp()
{
    Engine::SetUp();
}

void Target::Run(const QByteArray& input)
{
    {
        const Case testCase(input);
        Zones::Set(*testCase.zone);
        Engine::Time().SetUtc_ms(testCase.now_ms);
        Check(testCase);
    }
    Engine::TakeLog();
    EXPECT_THAT(Engine::TakeRequests().isEmpty(), "a fake task asks nobody");
    EXPECT_THAT(FakeTask::Living().isEmpty(), "the action owns its task");
}
