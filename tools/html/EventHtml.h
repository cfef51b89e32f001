#pragma once

#include "WeekLayout.h"
#include "engine/Event.h"

#include <QString>
#include <QStringList>

struct PageNotes;
struct RehearsalResult;

// One event on a page: its entry in a day, which carries its details, and its bars.
namespace EventHtml
{

// "e12" of the page's element that has everything of the event with that index, which also stands in its data-event.
[[nodiscard]] QString Id(size_t event);

// A list item: a button with time, kind, subject and marks, and the details, which the page's script shows. For a
// carried entry only a button that leads to the event's own.
[[nodiscard]] QString Entry(const RehearsalResult& run, const PageNotes& notes, const WeekLayout::Entry& entry);

// How much room that needs, see WeekLayout::RoomOf.
[[nodiscard]] WeekLayout::Room RoomFor(const RehearsalResult& run, const PageNotes& notes, const Event& event,
                                       bool isCarried, int columns);

// The coloured part of a day's column.
[[nodiscard]] QString Bar(const RehearsalResult& run, const WeekLayout::Bar& bar);

// The marks of an event, as they are written and as classes of the page's style.
[[nodiscard]] QStringList Marks(const RehearsalResult& run, const Event& event);

// "08:30", and "08:30:10" where there are seconds.
[[nodiscard]] QString TimeText(qint64 moment_ms);

// "Mon 25 March".
[[nodiscard]] QString DateText(const QDate& date);

} // namespace EventHtml
