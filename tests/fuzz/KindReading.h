#pragma once

#include <QStringList>

#include <span>

// A kind of task, read a second time.
struct KindReading
{
    const char* name; // in schedules; null: by number only
    int fewest;       // parameters; negative: no task of this kind can be made
    int most;
    const char* peer; // the one that its tasks ask; empty: none

    // What a task with those parameters, due at 08:30:00, sends to peers that all obey.
    QStringList (*requests)(const QStringList& parameters);

    // All kinds, by their numbers.
    [[nodiscard]] static std::span<const KindReading> All();
};
