#pragma once

#include <QDate>
#include <QString>
#include <QTime>

#include <cstdint>

// On which days an entry of the schedule is due: those of the week, or the spot date, within the time in which it is
// valid. The predicates keep no history: each call decides from the clock of that moment.
class ActionDays
{
public:
    // In an order without gaps: there may be a hundred thousand entries.
    QDate m_from;   // inclusive, where m_hasFrom
    QDate m_to;     // inclusive, where m_hasTo
    int m_day = -1; // -1: any
    int m_month = -1;
    int m_year = -1;
    std::uint8_t m_dow = 0; // bit n: the C library's week-day number n
    bool m_hasFrom : 1 = false;
    bool m_hasTo : 1 = false;

    // Whether today is one of the days.
    [[nodiscard]] bool IsDueToday() const;

    // Whether it is due when the wall clock shows that week day, as the C library numbers them, and that date, and UTC
    // has the other date; only a spot date needs that one.
    [[nodiscard]] bool IsDue(int weekDay, const QDate& date, const QDate& utcDate) const;

    // Whether the entry restricts day, month or year, on which it is due besides its days of the week.
    [[nodiscard]] bool HasSpotDate() const;

protected:
    // Reads the days of the week, seven characters from Monday to Sunday of which "1" means due.
    void ParseWeekDays(QLatin1String field);

    // Reads the first and the last date, "yyyyMMdd" each; what is no date is no limit.
    void ParseValidity(QLatin1String from, QLatin1String to);

    // How records tell them: a spot field's number or "*", and a limit's date or "always".
    [[nodiscard]] static QString SpotText(int value);
    [[nodiscard]] QString FromText() const;
    [[nodiscard]] QString ToText() const;

    // Whether that local date is one of the days, for what starts at that time of it.
    [[nodiscard]] bool IsDueAt(const QDate& date, QTime time) const;

private:
    [[nodiscard]] bool IsValid(const QDate& date) const;
};
