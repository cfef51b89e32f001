#include "SpotRules.h"

#include "engine/DueDays.h"
#include "meant/Meant.h"
#include "words/DaysText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

using namespace ScheduleFields;

namespace
{

constexpr int LAST_MONTH = 12;
constexpr int LAST_DAY = 31;
constexpr int CENTURY = 100;
constexpr int YEAR_DAYS = 366;
constexpr int LAST_YEAR = 9999; // the time of far later ones is more than a number holds
constexpr int SAMPLE_DAYS = 7;  // no zone keeps summer time for less

const QString ANY_SIGN = QStringLiteral("*");
const QString DATE_FORMAT = QStringLiteral("yyyy-MM-dd");

Finding New(const Entry& entry, FindingKind kind, Field field, const QString& text, const QString& advice)
{
    return {entry.line.number, kind, Entry::FieldName(field), text, advice};
}

// Takes the days of the week out of an action for as long as it lives, so that the spot date alone counts.
class SpotAlone final
{
public:
    explicit SpotAlone(Action& action)
        : m_action(action)
        , m_days(std::exchange(action.m_dow, std::uint8_t{0}))
    {
    }
    ~SpotAlone() { m_action.m_dow = m_days; }
    SpotAlone(const SpotAlone&) = delete;
    SpotAlone& operator=(const SpotAlone&) = delete;

private:
    Action& m_action;
    const std::uint8_t m_days;
};

// A whole date in the place of one field. Whether it is one, and that is told.
bool LookAtDate(const Entry& entry, Findings& findings)
{
    constexpr std::array FIELDS{FIELD_DAY, FIELD_MONTH, FIELD_YEAR};
    const auto* const place =
        std::ranges::find_if(FIELDS, [&](Field field) { return !Meant::SpotDate(entry.Field(field)).isEmpty(); });
    if (place == FIELDS.end())
        return false;
    QStringList meant = Meant::SpotDate(entry.Field(*place));
    QString line = entry.line.text;
    for (size_t i = 0; i < FIELDS.size(); ++i)
    {
        QString& part = meant[static_cast<qsizetype>(i)];
        const QString other = FIELDS.at(i) == *place ? QString() : entry.Field(FIELDS.at(i));
        const bool isSaid = !other.isEmpty() && other != ANY_SIGN;
        if (isSaid && part == ANY_SIGN)
            part = other;
        // What says something else leaves nothing certain.
        if (isSaid && (other.toInt() == 0 || other.toInt() != part.toInt()))
            return false;
        line = Entry::With(line, FIELDS.at(i), part);
    }
    Finding finding = New(entry, FindingKind::SPOT_ANY, *place,
                          QStringLiteral("\"%1\" is a whole date, and counts as any").arg(entry.Field(*place)),
                          QStringLiteral("write day, month and year in their own fields: ") +
                              meant.join(QLatin1Char(FIELD_SEPARATOR)));
    finding.suggestion = line;
    findings.Add(finding);
    return true;
}

// Whether something was meant that the daemon does not read.
bool LookAtForm(const Entry& entry, Field field, int value, const char* form, Findings& findings)
{
    const QString text = entry.Field(field);
    if (value != ANY || text.isEmpty() || text == ANY_SIGN)
        return false;
    const QString meant = field == FIELD_YEAR ? Meant::Year(text) : Meant::SpotNumber(text);
    const bool isOfField = field != FIELD_MONTH || meant.toInt() <= LAST_MONTH;
    Finding finding = New(entry, FindingKind::SPOT_ANY, field, QStringLiteral("\"%1\" counts as any").arg(text),
                          QStringLiteral("write %1, or * for any").arg(QLatin1String(form)));
    static const QRegularExpression NUMBERS(QStringLiteral("\\d[-./ ]\\s*\\d"));
    if (NUMBERS.match(text).hasMatch())
        finding.advice += QStringLiteral("; day, month and year have a field each");
    if (!meant.isEmpty() && isOfField)
    {
        finding.advice = QStringLiteral("write ") + meant;
        finding.suggestion = entry.With(field, meant);
    }
    findings.Add(finding);
    return finding.suggestion.has_value();
}

// A date that is written in another order: the month before the day, or the year first. Whether it is one.
bool LookAtOrder(const Entry& entry, Findings& findings)
{
    const int day = entry.Field(FIELD_DAY).toInt();
    const int month = entry.Field(FIELD_MONTH).toInt();
    const int year = entry.Field(FIELD_YEAR).toInt();
    const bool isMonthFirst = month > LAST_MONTH && month <= LAST_DAY && day >= 1 && day <= LAST_MONTH;
    const bool isYearFirst = day > LAST_DAY && year >= 1 && year <= LAST_DAY && month >= 1 && month <= LAST_MONTH;
    if (!isMonthFirst && !isYearFirst)
        return false;
    Finding finding = New(
        entry, FindingKind::SPOT_ANY, isMonthFirst ? FIELD_MONTH : FIELD_DAY,
        isMonthFirst ? QStringLiteral("there is no month %1, which counts as any: day and month are swapped").arg(month)
                     : QStringLiteral("there is no day %1, which counts as any: day and year are swapped").arg(day),
        {});
    const Field other = isMonthFirst ? FIELD_MONTH : FIELD_YEAR;
    const QString text = Entry::With(entry.With(FIELD_DAY, entry.Field(other)), other, entry.Field(FIELD_DAY));
    finding.advice = QStringLiteral("write ") + text.section(QLatin1Char(FIELD_SEPARATOR), FIELD_DAY, FIELD_YEAR);
    finding.suggestion = text;
    findings.Add(finding);
    return true;
}

// The days of the week do not restrict the spot date: they come on top. Whether they leave nothing to it.
bool LookAtDaysBesides(const Entry& entry, Findings& findings)
{
    const Action& action = *entry.GetAction();
    const bool isEveryDay = action.m_dow == DaysText::EVERY_DAY;
    if (action.m_dow == 0 || (!isEveryDay && action.m_day != ANY))
        return isEveryDay;
    findings.Add(
        New(entry, FindingKind::DAYS_AND_SPOT, FIELD_DAYS,
            isEveryDay
                ? QStringLiteral("with all days marked the spot date counts for nothing: it is due "
                                 "every day")
                : QStringLiteral("it is due on these days all the time, and on %1 besides").arg(DaysText::Spot(action)),
            QStringLiteral("write 0000000 for the spot date alone; from and to restrict the days")));
    return isEveryDay;
}

// The last date that the spot fields allow; invalid where they go on for ever.
QDate LastDate(const Action& action)
{
    if (action.m_year == ANY)
        return {};
    const QDate month(action.m_year, action.m_month == ANY ? LAST_MONTH : action.m_month, 1);
    const int day = action.m_day == ANY ? month.daysInMonth() : std::min(action.m_day, month.daysInMonth());
    return {month.year(), month.month(), day};
}

// The first day of the coming year on which the entry is due by a date in UTC that is not the local one.
QDate FirstOtherDate(const Action& action, const QDate& today, DueDays& dueDays)
{
    QDate first = action.m_hasFrom ? std::max(today, action.m_from) : today;
    if (action.m_year != ANY)
        first = std::max(first, QDate(action.m_year, 1, 1).addDays(-1));
    const QDate last = first.addDays(YEAR_DAYS);
    // Most times of day have one date all over the year.
    bool mayDiffer = false;
    for (QDate date = first; date <= last && !mayDiffer; date = date.addDays(SAMPLE_DAYS))
        mayDiffer = dueDays.IsUtcDateOther(action.m_startTime, date);
    for (QDate date = first; date <= last && mayDiffer; date = date.addDays(1))
    {
        if (dueDays.IsUtcDateOther(action.m_startTime, date) && dueDays.IsDue(action, date))
            return date;
    }
    return {};
}

} // namespace

bool SpotRules::LookAtSpot(const Entry& entry, const QDate& today, DueDays& dueDays, Findings& findings)
{
    Action& action = *entry.GetAction();
    if (LookAtDate(entry, findings) || LookAtOrder(entry, findings))
        return true;
    bool isMisread = LookAtForm(entry, FIELD_DAY, action.m_day, "1 to 31", findings);
    isMisread = LookAtForm(entry, FIELD_MONTH, action.m_month, "1 to 12", findings) || isMisread;
    isMisread = LookAtForm(entry, FIELD_YEAR, action.m_year, "a year", findings) || isMisread;
    if (!action.HasSpotDate())
        return isMisread;
    if (DaysText::IsSpotImpossible(action))
    {
        findings.Add(New(entry, FindingKind::IMPOSSIBLE_DATE, FIELD_DAY,
                         QStringLiteral("month %1%2 has no day %3")
                             .arg(QString::number(action.m_month),
                                  action.m_year == ANY ? QString() : QStringLiteral(" of %1").arg(action.m_year),
                                  QString::number(action.m_day)),
                         QStringLiteral("write a day that the month has")));
        return true;
    }
    if (action.m_year > LAST_YEAR)
    {
        findings.Add(
            New(entry, FindingKind::NEVER_DUE, FIELD_YEAR,
                QStringLiteral("there is no device in the year %1: the spot date never comes").arg(action.m_year),
                QStringLiteral("write a year of four digits, or * for any")));
        return true;
    }
    if (LookAtDaysBesides(entry, findings))
        return false;
    const SpotAlone alone(action);
    const QDate last = LastDate(action);
    // At the device's time the date in UTC may still be yesterday's.
    if (action.m_year != ANY && last < today && !dueDays.IsDue(action, today))
    {
        Finding finding = New(entry, FindingKind::PAST_DATE, FIELD_YEAR, QStringLiteral("the spot date has gone by"),
                              QStringLiteral("write a later year, or take the line out"));
        if (const QString year = Meant::Year(entry.Field(FIELD_YEAR)); action.m_year < CENTURY && !year.isEmpty())
        {
            finding.text = QStringLiteral("%1 is the year %1, which has gone by").arg(action.m_year);
            finding.advice = QStringLiteral("write ") + year;
            finding.suggestion = entry.With(FIELD_YEAR, year);
        }
        findings.Add(finding);
        return true;
    }
    const QDate other = FirstOtherDate(action, today, dueDays);
    if (other.isValid())
        findings.Add(New(entry, FindingKind::UTC_DATE, FIELD_DAY,
                         QStringLiteral("the spot date is that of UTC: it is due on %1, local date")
                             .arg(other.toString(DATE_FORMAT)),
                         QStringLiteral("take a time at which both dates agree, or write the date in UTC")));
    return false;
}
