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
using WeekLayout::Width;
using WeekLayout::WIDTHS;

const QTime MIDNIGHT(0, 0);

static_assert(Lanes::LAYOUTS == WIDTHS, "a bar has the same lane in each layout");

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
        day.bars.push_back({index, begin_s, end_s, isBegun, !isLast || isOpen || isCut, isLast && isOpen, {}, {}, 0});
        if (i != own)
            day.entries.push_back({index, begin_s, true, {}, {}});
    }
}

void Place(Week& week, Width width)
{
    std::vector<HourScale::Items> items;
    for (const Day& day : week.days)
    {
        HourScale::Items needed(day.entries.size());
        std::ranges::transform(day.entries, needed.begin(), [&](const Entry& entry) {
            return HourScale::Item{entry.time_s, entry.room.rows.at(width)};
        });
        items.push_back(std::move(needed));
    }
    HourScale& scale = week.scale.at(width);
    scale = HourScale(items);
    for (size_t i = 0; i < week.days.size(); ++i)
    {
        Day& day = week.days[i];
        const std::vector<double> places = scale.Places(items[i]);
        for (size_t j = 0; j < places.size(); ++j)
            day.entries[j].top.at(width) = places[j];
        for (Bar& bar : day.bars)
        {
            const double top = scale.Place(bar.begin_s);
            bar.top.at(width) = top;
            bar.length.at(width) = std::max(scale.Place(bar.end_s) - top, Lanes::LEAST_LENGTH);
        }
    }
}

// Lanes in which no bars cover one another, whatever the width.
void AssignLanes(Day& day)
{
    std::vector<Lanes::Bar> bars;
    for (const Bar& bar : day.bars)
    {
        Lanes::Bar each{};
        for (size_t width = 0; width < WIDTHS; ++width)
            each.at(width) = {bar.top.at(width), bar.top.at(width) + bar.length.at(width)};
        bars.push_back(each);
    }
    const std::vector<int> lanes = Lanes::Assign(bars);
    for (size_t i = 0; i < lanes.size(); ++i)
    {
        day.bars[i].lane = lanes[i];
        day.lanes = std::max(day.lanes, lanes[i] + 1);
    }
}

void Place(Week& week)
{
    for (Day& day : week.days)
    {
        std::ranges::stable_sort(day.entries, {}, &Entry::time_s);
        std::ranges::stable_sort(day.bars, {}, &Bar::begin_s);
    }
    for (const Width width : {WeekLayout::NARROW, WeekLayout::WIDE})
        Place(week, width);
    std::ranges::for_each(week.days, AssignLanes);
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
        days[IndexOf(days, shown_ms)].entries.push_back({i, SecondOfDay(shown_ms), false, {}, {}});
        if (IsBar(events[i]))
            AddBars(days, events[i], i, from_ms, until_ms);
    }
    const auto columns = static_cast<int>(std::min<size_t>(days.size(), WEEK_DAYS));
    std::vector<Week> weeks;
    for (size_t i = 0; i < days.size(); ++i)
    {
        if (i % WEEK_DAYS == 0)
            weeks.push_back({{}, {HourScale({}), HourScale({})}});
        for (Entry& entry : days[i].entries)
            entry.room = roomOf(events[entry.event], entry.isCarried, columns);
        weeks.back().days.push_back(std::move(days[i]));
    }
    for (Week& week : weeks)
        Place(week);
    return weeks;
}
