#pragma once

#include "RequestedStart.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QTime>

#include <map>
#include <set>

// One difference between the requests of two schedules on a date: a start that comes, goes or moves, one that asks for
// something else at the same time, or several at one moment that come in another order.
struct StartChange
{
    QTime before; // of the day; invalid: it comes
    QTime after;  // invalid: it goes
    QString phrase;
    QStringList lost; // what the old schedule alone asks for, where the times and the phrase do not tell it
    QStringList gained;
    int lineBefore = 0; // 0: none, or several
    int lineAfter = 0;

    [[nodiscard]] QTime First() const { return before.isValid() ? before : after; }
    [[nodiscard]] bool IsMove() const { return before.isValid() && after.isValid() && before != after; }

    // By time; what goes stands before what comes in its place.
    [[nodiscard]] bool operator<(const StartChange& other) const;
};

// On which dates each comes.
using StartChanges = std::map<StartChange, std::set<QDate>>;

namespace StartDiff
{

// The changes from the starts of one rehearsal to those of another of the same span. There is none only where both ask
// for the same at the same moments in the same order, and play the same tracks.
[[nodiscard]] StartChanges Of(RequestedStarts before, RequestedStarts after);

} // namespace StartDiff
