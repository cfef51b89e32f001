#pragma once

#include "Entry.h"

// How long a playlist plays.
namespace PlaylistLength
{

// Of an entry that plays a playlist: how long its tracks take. At most a day.
[[nodiscard]] qint64 Of_s(const Entry& entry);

// Whether each of its tracks tells how long it is.
[[nodiscard]] bool IsKnown(const Entry& entry);

} // namespace PlaylistLength
