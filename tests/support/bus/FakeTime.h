#pragma once

#include <QDateTime>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

// The calendar time that a child process sees: it begins where it is set, and runs on. Timers and time-outs, which
// follow the monotonic clock, are left alone.
class FakeTime final
{
public:
    FakeTime();

    // Sets the calendar time, also of a process that runs already.
    void Set(const QDateTime& now);

    // The same, in UTC.
    void Set(const QDate& day, const QTime& time) { Set(QDateTime(day, time, Qt::UTC)); }

    // The calendar time that the process sees at this moment.
    [[nodiscard]] QDateTime Now() const;

    // Has a process that is started with that environment see this time.
    void Apply(QProcessEnvironment& environment) const;

private:
    QTemporaryDir m_folder;
    QFile m_file; // what the process reads, see tests/support/clock
    qint64* m_offset_ms = nullptr;
};
