#include "Moment.h"

#include "Clock.h"
#include "ToolError.h"

#include <QLocale>

#include <array>
#include <ctime>

namespace
{

constexpr int YEAR_ZERO = 1900;
constexpr int FIRST_YEAR = 1970;
constexpr int UNKNOWN_SEASON = -1;
constexpr qint64 LONGEST_CHANGE_MS = 3LL * 3600 * Moment::MS_PER_S; // no clock is put back by more

const QString DATE_FORMAT = QStringLiteral("yyyy-MM-dd");
const QString TIME_FORMAT = QStringLiteral("HH:mm:ss");

std::tm Local(qint64 moment_ms)
{
    const std::time_t seconds = moment_ms >= 0 ? moment_ms / Moment::MS_PER_S : (moment_ms - 999) / Moment::MS_PER_S;
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    return parts;
}

} // namespace

qint64 Moment::Now_ms()
{
    return qint64{Clock::Now()} * MS_PER_S;
}

qint64 Moment::FromLocal_ms(const QDate& date, const QTime& time)
{
    std::tm parts{};
    parts.tm_year = date.year() - YEAR_ZERO;
    parts.tm_mon = date.month() - 1;
    parts.tm_mday = date.day();
    parts.tm_hour = time.hour();
    parts.tm_min = time.minute();
    parts.tm_sec = time.second();
    parts.tm_isdst = UNKNOWN_SEASON;
    std::tm any = parts;
    const qint64 moment_ms = qint64{std::mktime(&any)} * MS_PER_S + time.msec();
    // In a zone without summer time the C library would look for one through years.
    if (any.tm_isdst != 0 || Local(moment_ms - LONGEST_CHANGE_MS).tm_isdst != 1)
        return moment_ms;
    parts.tm_isdst = 1;
    std::tm summer = parts;
    const std::time_t first = std::mktime(&summer);
    // Where there is summer time at that moment it is the first of two.
    if (summer.tm_isdst == 1 && summer.tm_hour == time.hour() && summer.tm_mday == date.day())
        return static_cast<qint64>(first) * MS_PER_S + time.msec();
    return moment_ms;
}

qint64 Moment::Parse_ms(const QString& option, const QString& text)
{
    const qsizetype dateLength = DATE_FORMAT.size();
    const QDate date = QDate::fromString(text.left(dateLength), DATE_FORMAT);
    const QString rest = text.mid(dateLength);
    QTime time(0, 0);
    if (!rest.isEmpty())
    {
        const bool isSeparated = rest[0] == u'T' || rest[0] == u' ';
        time = QTime::fromString(rest.mid(1), rest.size() == 6 ? QStringLiteral("HH:mm") : TIME_FORMAT);
        if (!isSeparated)
            time = QTime();
    }
    if (!date.isValid() || !time.isValid() || date.year() < FIRST_YEAR)
        throw ToolError(QStringLiteral("%1: a moment like 2024-05-15 or 2024-05-15T08:30:00 is expected, not \"%2\"")
                            .arg(option, text));
    return FromLocal_ms(date, time);
}

QDate Moment::LocalDate(qint64 moment_ms)
{
    const std::tm parts = Local(moment_ms);
    return {parts.tm_year + YEAR_ZERO, parts.tm_mon + 1, parts.tm_mday};
}

QTime Moment::LocalTime(qint64 moment_ms)
{
    const std::tm parts = Local(moment_ms);
    const qint64 rest_ms = (moment_ms % MS_PER_S + MS_PER_S) % MS_PER_S;
    return {parts.tm_hour, parts.tm_min, parts.tm_sec, static_cast<int>(rest_ms)};
}

QString Moment::DateText(const QDate& date)
{
    return QLocale::c().toString(date, QStringLiteral("ddd yyyy-MM-dd"));
}

QString Moment::TimeText(qint64 moment_ms)
{
    return TimeText(LocalTime(moment_ms));
}

QString Moment::TimeText(const QTime& time)
{
    return time.toString(TIME_FORMAT);
}

QString Moment::IsoText(qint64 moment_ms)
{
    const long offset_min = Local(moment_ms).tm_gmtoff / 60;
    const long size_min = offset_min < 0 ? -offset_min : offset_min;
    return QStringLiteral("%1T%2%3%4:%5")
        .arg(LocalDate(moment_ms).toString(DATE_FORMAT), TimeText(moment_ms), QChar(offset_min < 0 ? u'-' : u'+'))
        .arg(size_min / 60, 2, 10, QLatin1Char('0'))
        .arg(size_min % 60, 2, 10, QLatin1Char('0'));
}

QString Moment::SpanText(qint64 span_s)
{
    struct Unit
    {
        qint64 length_s;
        const char* name;
    };
    constexpr std::array UNITS{Unit{DAY_S, "d"}, Unit{3600, "h"}, Unit{60, "min"}, Unit{1, "s"}};
    for (size_t i = 0; i + 1 < UNITS.size(); ++i)
    {
        const Unit& unit = UNITS[i];
        const Unit& part = UNITS[i + 1];
        if (span_s < unit.length_s)
            continue;
        QString text = QStringLiteral("%1 %2").arg(span_s / unit.length_s).arg(QLatin1String(unit.name));
        const qint64 parts = span_s % unit.length_s / part.length_s;
        if (parts > 0)
            text += QStringLiteral(" %1 %2").arg(parts).arg(QLatin1String(part.name));
        return text;
    }
    return QStringLiteral("%1 s").arg(span_s);
}
