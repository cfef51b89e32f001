#pragma once

#include <QString>

#include <cstdint>
#include <memory>

struct Event;
struct RehearsalResult;

// A rehearsal as text, which can be written while it runs: the head, a piece for each event in the order of their
// moments, and the foot. from_ms: where the span of interest begins.
class RehearsalText
{
public:
    // For a terminal: a heading for each day, a line for each event, and below it its requests and tracks.
    [[nodiscard]] static std::unique_ptr<RehearsalText> Table(qint64 from_ms);

    // Which lines are told as idle: those that do not start at their time on any day, or those without an event as
    // well.
    enum class Idle : std::uint8_t
    {
        ON_ANY_DAY,
        IN_SPAN,
    };

    // One object: "schedule", "from", "until", "interrupted", "events", "idle" (lines that do not start), "loads" (what
    // a load at another moment would start too early). Moments are ISO 8601, in local time with the offset; null, or
    // empty in CSV, where an event's start is not known.
    [[nodiscard]] static std::unique_ptr<RehearsalText> Json(qint64 from_ms, Idle idle = Idle::IN_SPAN);

    // RFC 4180: a row of names, then a row for each request, or for each event that has none.
    [[nodiscard]] static std::unique_ptr<RehearsalText> Csv(qint64 from_ms);

    // For calendars: RFC 5545, an entry for each start, in UTC. until_ms: the end of the rehearsal of file. Throws
    // ToolError when the tool is built without the library that writes it, or that
    // fails.
    [[nodiscard]] static std::unique_ptr<RehearsalText> Calendar(qint64 from_ms, qint64 until_ms, const QString& file);

    explicit RehearsalText(qint64 from_ms)
        : m_from_ms(from_ms)
    {
    }
    virtual ~RehearsalText() = default;

    RehearsalText(const RehearsalText&) = delete;
    RehearsalText& operator=(const RehearsalText&) = delete;

    [[nodiscard]] virtual QString Head() { return {}; }
    [[nodiscard]] virtual QString Of(const Event& event) = 0;

    // run: without its events. Says up to where the text is complete, if it is cut.
    [[nodiscard]] virtual QString Foot(const RehearsalResult& run) = 0;

protected:
    const qint64 m_from_ms;
};
