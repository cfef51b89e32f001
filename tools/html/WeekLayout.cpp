#include "WeekLayout.h"

#include "Lanes.h"
#include "base/Moment.h"

#include <QTime>

#include <algorithm>

namespace
{

using WeekLayout::Bar;
using WeekLayout::Day;
using WeekLayout::Entry;
using WeekLayout::Week;

const QTime MIDNIGHT(0, 0);

int SecondOfDay(qint64 moment_ms)
{
    return MIDNIGHT.secsTo(Moment::LocalTime(moment_ms));
}

std::vector<Day> Days(qint64 from_ms, qint64 until_ms)
{
    std::vector<Day> days;
    const QDate last = Moment::LocalDate(std::max(from_ms, until_ms - 1));
    for (QDate date = Moment::LocalDate(from_ms); date <= last; date = date.addDays(1))
        days.push_back(
            {date, Moment::FromLocal_ms(date, MIDNIGHT), Moment::FromLocal_ms(date.addDays(1), MIDNIGHT), {}, {}});
    return days;
}

size_t IndexOf(const std::vector<Day>& days, qint64 moment_ms)
{
    const qint64 index = days.front().date.daysTo(Moment::LocalDate(moment_ms));
    return static_cast<size_t>(std::clamp<qint64>(index, 0, static_cast<qint64>(days.size()) - 1));
}

// Cuts a playback at the midnights. Where the clocks are put back its end may show an earlier time than its beginning.
void AddBars(std::vector<Day>& days, const Event& event, size_t index, qint64 from_ms, qint64 until_ms)
{
    const bool isOpen = event.end_ms == Event::OPEN;
    const qint64 begin_ms = std::clamp(event.begin_ms, from_ms, std::max(from_ms, until_ms - 1));
    const qint64 end_ms = isOpen ? until_ms : std::min(event.end_ms, until_ms);
    const size_t own = IndexOf(days, WeekLayout::Shown_ms(event, from_ms, until_ms));
    for (size_t i = IndexOf(days, begin_ms); i < days.size(); ++i)
    {
        Day& day = days[i];
        if (day.begin_ms >= end_ms && day.begin_ms > begin_ms)
            return;
        const bool isBegun = event.begin_ms < std::max(day.begin_ms, from_ms);
        const bool isLast = end_ms <= day.end_ms;
        const bool isCut = !isOpen && event.end_ms > until_ms;
        const int begin_s = begin_ms <= day.begin_ms ? 0 : SecondOfDay(begin_ms);
        const int end_s = end_ms >= day.end_ms ? HourScale::DAY_S : std::max(begin_s, SecondOfDay(end_ms));
        day.bars.push_back({index, begin_s, end_s, isBegun, !isLast || isOpen || isCut, isLast && isOpen, 0, 0, 0});
        if (i != own)
            day.entries.push_back({index, begin_s, true, {}, 0});
    }
}

void Place(Week& week)
{
    std::vector<HourScale::Items> items;
    for (Day& day : week.days)
    {
        std::ranges::stable_sort(day.entries, {}, &Entry::time_s);
        std::ranges::stable_sort(day.bars, {}, &Bar::begin_s);
        HourScale::Items needed(day.entries.size());
        std::ranges::transform(day.entries, needed.begin(), [](const Entry& entry) {
            return HourScale::Item{entry.time_s, entry.room.rows};
        });
        items.push_back(std::move(needed));
    }
    week.scale = HourScale(items);
    for (size_t i = 0; i < week.days.size(); ++i)
    {
        Day& day = week.days[i];
        const std::vector<double> places = week.scale.Places(items[i]);
        for (size_t j = 0; j < places.size(); ++j)
            day.entries[j].top = places[j];
        std::vector<Lanes::Bar> bars;
        for (Bar& bar : day.bars)
        {
            bar.top = week.scale.Place(bar.begin_s);
            bar.length = std::max(week.scale.Place(bar.end_s) - bar.top, Lanes::LEAST_LENGTH);
            bars.push_back({bar.top, bar.top + bar.length});
        }
        const std::vector<int> lanes = Lanes::Assign(bars);
        for (size_t j = 0; j < lanes.size(); ++j)
        {
            day.bars[j].lane = lanes[j];
            day.lanes = std::max(day.lanes, lanes[j] + 1);
        }
    }
}

} // namespace

bool WeekLayout::IsBar(const Event& event)
{
    return event.plays && event.type != TASK_PLAY_MESSAGE;
}

qint64 WeekLayout::Shown_ms(const Event& event, qint64 from_ms, qint64 until_ms)
{
    qint64 moment_ms = event.Acts() ? event.moment_ms : event.due_ms;
    if (event.plays)
        moment_ms = std::max(event.moment_ms, event.begin_ms);
    return std::clamp(moment_ms, from_ms, std::max(from_ms, until_ms - 1));
}

std::vector<Week> WeekLayout::Weeks(const std::vector<Event>& events, qint64 from_ms, qint64 until_ms,
                                    const RoomOf& roomOf)
{
    std::vector<Day> days = Days(from_ms, until_ms);
    for (size_t i = 0; i < events.size(); ++i)
    {
        const qint64 shown_ms = Shown_ms(events[i], from_ms, until_ms);
        days[IndexOf(days, shown_ms)].entries.push_back({i, SecondOfDay(shown_ms), false, {}, 0});
        if (IsBar(events[i]))
            AddBars(days, events[i], i, from_ms, until_ms);
    }
    const auto columns = static_cast<int>(std::min<size_t>(days.size(), WEEK_DAYS));
    std::vector<Week> weeks;
    for (size_t i = 0; i < days.size(); ++i)
    {
        if (i % WEEK_DAYS == 0)
            weeks.push_back({{}, HourScale({})});
        for (Entry& entry : days[i].entries)
            entry.room = roomOf(events[entry.event], entry.isCarried, columns);
        weeks.back().days.push_back(std::move(days[i]));
    }
    for (Week& week : weeks)
        Place(week);
    return weeks;
}
