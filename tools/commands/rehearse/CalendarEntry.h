#pragma once

#include <QHash>
#include <QString>

#include <optional>

struct Event;
struct RehearsalResult;

// A start as a calendar shows it. Moments in milliseconds since 1970-01-01 00:00:00 UTC, at whole seconds.
struct CalendarEntry
{
    // The same in every calendar of a schedule of that name, and for what takes the start's place in a later one.
    QString identifier;

    qint64 begin_ms = 0;
    std::optional<qint64> end_ms; // none where it is a moment, or nobody knows how long it lasts
    QString summary;              // "Message gong.mp3", "late: Playlist morning from track 2"
    QString description;
    QString category; // what is not as the line has it: "MISSED", "LATE, REPEATED"; empty for what is
    bool takesPlace = true;
};

// Makes the entries of one calendar.
class CalendarEntries final
{
public:
    // file: the schedule. from_ms: the begin of the rehearsal, where what began at an unknown time is cut. until_ms:
    // its end, where what goes on is cut.
    CalendarEntries(const QString& file, qint64 from_ms, qint64 until_ms);

    // event: the next, in order. None for what is no start.
    [[nodiscard]] std::optional<CalendarEntry> Of(const Event& event);

    // Marks the moment from which a rehearsal that was ended early has no entries.
    [[nodiscard]] CalendarEntry OfCut(const RehearsalResult& run) const;

private:
    [[nodiscard]] qint64 Begin_ms(const Event& event) const;
    [[nodiscard]] QString Identifier(const Event& event);
    [[nodiscard]] std::optional<qint64> End_ms(const Event& event, qint64 begin_ms) const;
    [[nodiscard]] QString Description(const Event& event) const;

    const QString m_name; // of the file alone
    const qint64 m_from_ms;
    const qint64 m_until_ms;
    QHash<QString, int> m_numbers; // how many there are of an identifier's beginning
};
