#pragma once

#include <QDate>
#include <QString>
#include <QTime>

// Moments, in milliseconds since 1970-01-01 00:00:00 UTC, and how people write them: in the local time of the zone
// that the process has (see Workspace).
namespace Moment
{

inline constexpr qint64 MS_PER_S = 1000;
inline constexpr qint64 DAY_S = 86400;
inline constexpr qint64 DAY_MS = DAY_S * MS_PER_S;

[[nodiscard]] qint64 Now_ms();

// "2024-05-15", "2024-05-15T08:30" or "2024-05-15T08:30:00"; a blank may stand for the "T". A local time that comes
// twice means the first, one that is skipped the same span after the change. Throws ToolError, beginning with option,
// for another text.
[[nodiscard]] qint64 Parse_ms(const QString& option, const QString& text);

[[nodiscard]] qint64 FromLocal_ms(const QDate& date, const QTime& time);
[[nodiscard]] QDate LocalDate(qint64 moment_ms);

// With milliseconds.
[[nodiscard]] QTime LocalTime(qint64 moment_ms);

// "Wed 2024-05-15" and "08:30:00".
[[nodiscard]] QString DateText(const QDate& date);
[[nodiscard]] QString TimeText(qint64 moment_ms);
[[nodiscard]] QString TimeText(const QTime& time);

// "2024-05-15T08:30:00+02:00".
[[nodiscard]] QString IsoText(qint64 moment_ms);

// "3 h 20 min", "45 s": the two greatest units.
[[nodiscard]] QString SpanText(qint64 span_s);

} // namespace Moment
