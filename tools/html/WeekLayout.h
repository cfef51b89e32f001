#pragma once

#include "HourScale.h"
#include "engine/Event.h"

#include <QDate>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

// Where the events of a rehearsal stand on a page that has a column for each day: by the local date and the local time
// of day, so that a day of 23 or 25 hours is as high as any other. Places and lengths in rows, see HourScale. There are
// two layouts, as an entry may need fewer rows where the columns are wide.
namespace WeekLayout
{

inline constexpr int WEEK_DAYS = 7;

enum Width : std::uint8_t
{
    NARROW, // as narrow as columns can be
    WIDE,
    WIDTHS,
};

template <typename Value> using PerWidth = std::array<Value, WIDTHS>;

// What an entry needs of its own.
struct Room
{
    PerWidth<int> rows;
    int paperWidth; // of all its text on a printed sheet, in hundredths of the text's height
};

struct Entry
{
    size_t event;   // its index in the rehearsal
    int time_s;     // of the local day
    bool isCarried; // a bar that goes on from the day before: the event's own entry stands there
    Room room;
    PerWidth<double> top;
};

// The part of a playback that falls on the day.
struct Bar
{
    size_t event;
    int begin_s; // of the local day
    int end_s;
    bool isBegun; // goes on from before
    bool goesOn;  // on the next day, or beyond the rehearsal
    bool isOpen;  // nothing in the rehearsal ends it, and this is its last part
    PerWidth<double> top;
    PerWidth<double> length;
    int lane;
};

struct Day
{
    QDate date;
    qint64 begin_ms; // its midnight
    qint64 end_ms;
    std::vector<Entry> entries; // in the order of their times
    std::vector<Bar> bars;      // in the order of their beginnings
    int lanes = 0;
};

// Up to seven days that stand side by side.
struct Week
{
    std::vector<Day> days;
    PerWidth<HourScale> scale;
};

// Whether it is drawn as a bar: a playback that lasts, as opposed to a message.
[[nodiscard]] bool IsBar(const Event& event);

// The moment at which an event is shown: when it is heard, or else when the daemon acts or should have acted. An event
// that began before from_ms is shown at from_ms.
[[nodiscard]] qint64 Shown_ms(const Event& event, qint64 from_ms, qint64 until_ms);

// The room that an entry of that event needs. columns: that share the page's width.
using RoomOf = std::function<Room(const Event& event, bool isCarried, int columns)>;

// All days from from_ms to until_ms, seven to a week from the first one on.
[[nodiscard]] std::vector<Week> Weeks(const std::vector<Event>& events, qint64 from_ms, qint64 until_ms,
                                      const RoomOf& roomOf);

} // namespace WeekLayout
