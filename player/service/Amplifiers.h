#pragma once

#include "Status.h"

#include <QHash>
#include <QString>

// The outputs that switch amplifiers.
namespace Amplifiers
{

// Switches each output that the settings name: on where its bit is set, the first one's being the lowest. outputs:
// their names by their numbers, counted from 1; folder: where they are. NOT_SET_UP, and a record, where none is named
// or a bit is set for one that is not.
[[nodiscard]] Status Set(unsigned char mask, const QHash<int, QString>& outputs, const QString& folder);

} // namespace Amplifiers
