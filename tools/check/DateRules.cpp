#include "Rules.h"
#include "SpotRules.h"
#include "engine/DueDays.h"
#include "meant/Meant.h"

#include <algorithm>
#include <array>

using namespace ScheduleFields;

namespace
{

// 29 February stays away for eight years around 2100, and longer never.
constexpr int LONGEST_WAIT_DAYS = 8 * 366 + 1;

const QString DATE_FORMAT = QStringLiteral("yyyy-MM-dd");
const QString EACH_DAY = QStringLiteral("write 0 or 1 for each day from Monday to Sunday");
const QString NO_LIMIT = QStringLiteral("*"); // not the form that is asked for, but what it means is what happens

Finding New(const Entry& entry, FindingKind kind, Field field, const QString& text, const QString& advice)
{
    return {entry.line.number, kind, Entry::FieldName(field), text, advice};
}

// Whether the line has a date, readable or not.
bool HasDate(const Entry& entry)
{
    constexpr std::array FIELDS{FIELD_DAY, FIELD_MONTH, FIELD_YEAR};
    return std::ranges::any_of(
        FIELDS, [&](Field field) { return !entry.Field(field).isEmpty() && entry.Field(field) != NO_LIMIT; });
}

// What a row of digits may mean that is too short.
QString AdviseDays(const QString& days)
{
    const QString first = days.leftJustified(DAYS_A_WEEK, u'0');
    if (!days.contains(u'1'))
        return EACH_DAY + QStringLiteral(", with a 1 for one of them or more");
    if (days.startsWith(u'0'))
        return EACH_DAY + QStringLiteral(", as ") + first;
    // Numbers have no zeros at their front.
    return QStringLiteral("write %1 if the days at the end are missing, or %2 if a spreadsheet dropped the zeros at "
                          "the front")
        .arg(first, days.rightJustified(DAYS_A_WEEK, u'0'));
}

// Whether days were meant that the daemon does not read.
bool LookAtDays(const Entry& entry, Findings& findings)
{
    const QString days = entry.Field(FIELD_DAYS);
    const bool isPlain = std::ranges::all_of(days, [](QChar sign) { return sign == u'0' || sign == u'1'; });
    if (isPlain && days.size() == DAYS_A_WEEK)
        return false;
    QString meant = Meant::Days(days);
    // No day at all is meant only beside a date.
    if (!meant.contains(u'1') && !HasDate(entry))
        meant.clear();
    Finding finding =
        New(entry, FindingKind::DAYS_FORM, FIELD_DAYS,
            isPlain ? QStringLiteral("\"%1\" has %2 character%3 instead of 7")
                          .arg(days)
                          .arg(days.size())
                          .arg(days.size() == 1 ? QString() : QStringLiteral("s"))
                    : QStringLiteral("\"%1\": only a \"1\" of the first 7 characters means a day").arg(days),
            meant.isEmpty() ? EACH_DAY : QStringLiteral("write ") + meant);
    if (!meant.isEmpty())
        finding.suggestion = entry.With(FIELD_DAYS, meant);
    else if (isPlain && !days.isEmpty() && days.size() < DAYS_A_WEEK)
        finding.advice = AdviseDays(days);
    findings.Add(finding);
    return !meant.isEmpty();
}

void LookAtValidity(const Entry& entry, Field field, bool isRead, Findings& findings)
{
    const QString text = entry.Field(field);
    if (isRead || text.isEmpty() || text == NO_LIMIT)
        return;
    const QString meant = Meant::Date(text);
    Finding finding =
        New(entry, FindingKind::VALIDITY_DATE, field, QStringLiteral("%1 is no date, and counts as no limit").arg(text),
            meant.isEmpty() ? QStringLiteral("write a date that exists as yyyyMMdd, or nothing")
                            : QStringLiteral("write ") + meant);
    if (!meant.isEmpty())
        finding.suggestion = entry.With(field, meant);
    findings.Add(finding);
}

// Whether the range alone keeps the entry from ever being due; that is told here.
bool LookAtRange(const Entry& entry, const QDate& today, Findings& findings)
{
    const Action& action = *entry.GetAction();
    if (action.m_hasFrom && action.m_hasTo && action.m_to < action.m_from)
    {
        findings.Add(New(entry, FindingKind::INVERTED_RANGE, FIELD_TO,
                         QStringLiteral("the last day, %1, comes before the first, %2")
                             .arg(action.m_to.toString(DATE_FORMAT), action.m_from.toString(DATE_FORMAT)),
                         QStringLiteral("swap the two dates")));
        return true;
    }
    if (action.m_hasTo && action.m_to < today)
    {
        findings.Add(New(entry, FindingKind::EXPIRED, FIELD_TO,
                         QStringLiteral("was valid until %1, and is over").arg(action.m_to.toString(DATE_FORMAT)),
                         QStringLiteral("write a later date, or take the line out")));
        return true;
    }
    return false;
}

// isFormTold: a field of the days or the spot date cannot be read, and that is told.
void LookAtDue(const Entry& entry, const QDate& today, bool isFormTold, DueDays& dueDays, Findings& findings)
{
    const Action& action = *entry.GetAction();
    if (action.m_dow == 0 && !action.HasSpotDate())
    {
        if (isFormTold)
            return;
        findings.Add(New(entry, FindingKind::NEVER_DUE, FIELD_DAYS,
                         QStringLiteral("neither a day of the week nor a spot date: it is never due"),
                         QStringLiteral("write 1 for a day, or a day, month or year")));
        return;
    }
    QDate first = action.m_hasFrom ? std::max(today, action.m_from) : today;
    // A day of the week comes at once; a spot date of a far year does not.
    if (action.m_dow == 0 && action.m_year != ANY)
        first = std::max(first, QDate(action.m_year, 1, 1).addDays(-1));
    QDate last = first.addDays(LONGEST_WAIT_DAYS);
    if (action.m_hasTo)
        last = std::min(last, action.m_to);
    if (!dueDays.FirstDue(action, first, last).isValid())
        findings.Add(New(entry, FindingKind::NEVER_DUE, FIELD_DAYS,
                         QStringLiteral("none of its days is in the range in which it is valid: it is never due"),
                         QStringLiteral("change the days, or the first and the last date")));
}

} // namespace

void Rules::FindOddDates(const std::vector<Entry>& entries, const QDate& today, Findings& findings)
{
    DueDays dueDays;
    for (const Entry& entry : entries)
    {
        const Action* const action = entry.GetAction();
        if (action == nullptr)
            continue;
        const size_t before = findings.All().size();
        const bool areDaysMisread = LookAtDays(entry, findings);
        const bool isSpotOver = SpotRules::LookAtSpot(entry, today, dueDays, findings);
        const bool isFormTold = findings.All().size() > before;
        LookAtValidity(entry, FIELD_FROM, action->m_hasFrom, findings);
        LookAtValidity(entry, FIELD_TO, action->m_hasTo, findings);
        const bool isRangeOver = LookAtRange(entry, today, findings);
        if (!areDaysMisread && !isRangeOver && (!isSpotOver || action->m_dow != 0))
            LookAtDue(entry, today, isFormTold, dueDays, findings);
    }
}
