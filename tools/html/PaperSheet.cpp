#include "PaperSheet.h"

#include <algorithm>
#include <numeric>

namespace
{

constexpr int LEAST_LINES = 40;
constexpr int MOST_LINES = 97;

// The room in one of seven columns, in hundredths of the height of the text, for each line that the sheet has: text of
// half the height has room for twice as much. With what is lost at the ends of lines.
constexpr int ROOM_OF_A_LINE = 28;

int LinesOf(const WeekLayout::Day& day, int room)
{
    return std::accumulate(day.entries.begin(), day.entries.end(), 0, [=](int lines, const WeekLayout::Entry& entry) {
        return lines + (entry.room.paperWidth + room - 1) / room;
    });
}

} // namespace

int PaperSheet::Lines(const WeekLayout::Week& week)
{
    const auto columns = static_cast<int>(week.days.size());
    const auto fits = [&](int lines) {
        const int room = ROOM_OF_A_LINE * lines * WeekLayout::WEEK_DAYS / columns;
        return std::ranges::all_of(week.days, [&](const WeekLayout::Day& day) { return LinesOf(day, room) <= lines; });
    };
    int lines = LEAST_LINES;
    while (lines < MOST_LINES && !fits(lines))
        ++lines;
    return lines;
}
