#pragma once

#include <QString>
#include <QTime>

struct Event;

// The time that a line has, where the clocks change between a request and that time.
namespace OwnTime
{

// Gives the event its line's own time, which comes later or sooner than the seconds that were left said, or not at all.
void Move(Event& event, const QTime& own);

// Of an event whose line's time the clocks leave out.
[[nodiscard]] QString LeftOutText(const Event& event);

} // namespace OwnTime
