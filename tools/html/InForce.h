#pragma once

#include "WeekLayout.h"

#include <QStringList>

#include <vector>

struct PageNotes;
struct RehearsalResult;

// What is in force at each moment of a rehearsal: volume, light, radio, and what plays.
class InForce final
{
public:
    InForce(const RehearsalResult& run, const PageNotes& notes);

    // The states of the day, each from a second of the local day on: "0:12 28800:13". The numbers are places in Table.
    // Where the clocks are put back, an earlier time of day may follow a later one.
    [[nodiscard]] QString Of(const WeekLayout::Day& day) const;

    // Every state, as JSON: an array of arrays of four texts, with "" for what has not been set and for silence.
    [[nodiscard]] QByteArray Table() const;

private:
    struct Change
    {
        qint64 moment_ms;
        size_t state; // its place in m_states
    };

    const qint64 m_begin_ms;
    std::vector<QStringList> m_states;
    std::vector<Change> m_changes; // in the order of their moments; the first is the rehearsal's beginning
};
