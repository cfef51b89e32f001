#pragma once

#include "Entry.h"
#include "Findings.h"

#include <QDate>

class DueDays;

// Fields 3 to 5 of a line.
namespace SpotRules
{

// Adds what is odd about the spot date of an entry that was not rejected. True when no such date is to
// come, and the cause has been told.
[[nodiscard]] bool LookAtSpot(const Entry& entry, const QDate& today, DueDays& dueDays, Findings& findings);

} // namespace SpotRules
