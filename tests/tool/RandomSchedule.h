#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <random>

// A schedule as no person would write it, with its playlists: all kinds of task, many at a time, close to each other,
// to midnight and to the hours at which clocks are changed, with odd times and dates among them. The same seed gives
// the same one everywhere.
class RandomSchedule final
{
public:
    enum Manner
    {
        WILD,
        TAME, // only what a clock that is stepped from start to start can follow: few times, far apart, and no odd ones
    };

    // lines: how many at most; of a tame one, how many.
    RandomSchedule(std::uint32_t seed, int lines, Manner manner = WILD);

    // The file, in a folder of its own that is gone with the object, with the playlists beside it.
    [[nodiscard]] QString Path() const;
    [[nodiscard]] QString Folder() const { return m_folder.path(); }
    [[nodiscard]] QByteArray Text() const { return m_text; }

    // A moment to begin at, in milliseconds since 1970-01-01 00:00:00 UTC: on one of the days around which the clocks
    // are changed somewhere, or a leap day, or at the end of a year; at any phase of the second.
    [[nodiscard]] qint64 Start_ms() const { return m_start_ms; }

private:
    // From 0 up to but not including bound.
    int Below(int bound);
    template <size_t COUNT> const char* OneOf(const char* const (&texts)[COUNT])
    {
        return texts[static_cast<size_t>(Below(static_cast<int>(COUNT)))];
    }

    QByteArray Line();
    QByteArray Days();
    QByteArray StartTime();
    QByteArray Dates();
    QByteArray Task();
    void Write(const QString& name, const QByteArray& content) const;

    const Manner m_manner;
    QTemporaryDir m_folder;
    std::mt19937 m_random; // whose sequence the standard fixes
    QByteArray m_text;
    qint64 m_start_ms = 0;
    int m_focus_s = 0; // the time of day around which much happens
};
