#pragma once

#include "SchedulerTest.h"

#include <QRandomGenerator>
#include <QTime>

#include <optional>

// The fixture of the tests that compare the far pass with one that asks every action of the far list, over random
// schedules, moments and disturbances.
class AskingAllTest : public SchedulerTest
{
    Q_OBJECT
protected:
    // What the passes of a run have found, so that none compares nothing.
    struct Counts
    {
        int early = 0;
        int skipped = 0;
        int forced = 0;
        int late = 0;
        int unsteady = 0; // found while the clocks change
    };

    // Runs that many random schedules around each of the moments, in that time zone. Fails the test at the first
    // difference.
    void CompareAround(const QList<QDateTime>& moments, int schedules, quint32 seed);

    [[nodiscard]] const Counts& Found() const { return m_counts; }

private:
    QByteArrayList RandomLines();
    QByteArray RandomStart();
    QByteArray RandomDays();
    void Disturb();
    void DisturbTask();
    QStringList AskAll();
    QStringList Shown(const Action& action);
    void ComparePass();

    int Below(int bound) { return static_cast<int>(m_random.bounded(bound)); }
    template <typename T> T OneOf(std::initializer_list<T> values)
    {
        return *(values.begin() + Below(static_cast<int>(values.size())));
    }

    QRandomGenerator m_random;
    Counts m_counts;
};
