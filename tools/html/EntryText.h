#pragma once

#include "WeekLayout.h"
#include "engine/Event.h"

#include <QString>
#include <QStringList>

struct PageNotes;

// What an entry of a page says, and how much room it needs.
namespace EntryText
{

// "45.0", "gong.mp3": what is played or set, or would be; empty where there is no more to say than the kind of task.
[[nodiscard]] QString Subject(const Event& event, const PageNotes& notes);

// text, without its middle where it is longer than an entry shows.
[[nodiscard]] QString Shortened(const QString& text);

// How much room the entry needs in one of so many columns, with its marks. time: as it is shown; until: what follows it
// on paper.
[[nodiscard]] WeekLayout::Room RoomFor(const Event& event, const QString& time, const QString& until,
                                       const QStringList& marks, const PageNotes& notes, int columns);

} // namespace EntryText
