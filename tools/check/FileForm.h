#pragma once

#include "engine/ScheduleLine.h"

#include <QStringList>

#include <optional>
#include <vector>

class Workspace;

// What the form of a whole file hides: the daemon reads its bytes otherwise than they were written.
namespace FileForm
{

// The lines of a file in UTF-16 that has no byte-order mark; none of any other.
[[nodiscard]] std::optional<QStringList> Utf16Lines(const Workspace& workspace);

// What each line has between its carriage returns; a single text where it has none. As many as lines. Empty when the
// file cannot be read again.
[[nodiscard]] std::vector<QStringList> PartsAtReturns(const Workspace& workspace);

} // namespace FileForm
