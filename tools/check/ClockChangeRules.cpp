#include "Rules.h"
#include "Startable.h"

#include "base/Moment.h"
#include "engine/ClockChange.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>

using namespace ScheduleFields;

namespace
{

using Moment::DAY_S;
using Moment::MS_PER_S;

// Times of day, of one date, that a change of the clocks leaves out or brings twice.
struct Hour
{
    QDate date;
    qint64 begin_s; // after that date's midnight
    qint64 end_s;
    bool isTwice;

    static Hour Of(const ClockChange& change)
    {
        const QDate date = Moment::LocalDate(change.moment_ms);
        const qint64 after_s = QTime(0, 0).secsTo(Moment::LocalTime(change.moment_ms));
        if (change.shift_s > 0)
            return {date, after_s - change.shift_s, after_s, false};
        return {date, after_s, after_s - change.shift_s, true};
    }

    // Whether what begins at that second is concerned. What comes right behind the hour is, too: it would be watched,
    // or asked for ahead, within the hour.
    [[nodiscard]] bool Has(const Action& action, qint64 second) const
    {
        const int behind_s = !isTwice ? 1 : action.IsPrepared() ? Action::PREPARED_AHEAD_S : 0;
        return second >= begin_s && second < end_s + behind_s;
    }

    [[nodiscard]] QString Text(const QDate& day) const
    {
        return (isTwice ? QStringLiteral("%1 has it twice") : QStringLiteral("%1 leaves it out"))
            .arg(Moment::DateText(day));
    }
};

// The text of the first hour of each sort that the start is in.
QString Concerned(const Startable& start, const std::vector<Hour>& hours, const QDate& today)
{
    std::map<bool, QString> texts;
    for (const Hour& hour : hours)
    {
        // The hour may begin on the evening before, and end on the day after.
        for (const int shift : {-1, 0, 1})
        {
            const QDate day = hour.date.addDays(shift);
            const qint64 place = today.daysTo(day);
            const bool isDue = place >= 0 && place < YearDays::DAYS && start.days[static_cast<size_t>(place)];
            if (isDue && hour.Has(*start.entry->GetAction(), shift * DAY_S + start.second))
                texts.try_emplace(hour.isTwice, hour.Text(day));
        }
    }
    QStringList all;
    for (const auto& [isTwice, text] : texts)
        all.append(text);
    return all.join(QStringLiteral(", "));
}

} // namespace

void Rules::FindChangedHours(const std::vector<Entry>& entries, const QDate& today, Findings& findings)
{
    const qint64 from_ms = Moment::FromLocal_ms(today, QTime(0, 0));
    const std::vector<ClockChange> changes =
        ClockChange::Between(from_ms, Moment::FromLocal_ms(today.addDays(YearDays::DAYS), QTime(0, 0)));
    std::vector<Hour> hours;
    std::ranges::transform(changes, std::back_inserter(hours), Hour::Of);
    YearDays days(today);
    for (const Entry& entry : entries)
    {
        // Most entries are at no such time on any day.
        const auto mayBeIn = [&](const Hour& hour) {
            return std::ranges::any_of(std::array{-DAY_S, qint64{0}, DAY_S}, [&](qint64 shift_s) {
                return hour.Has(*entry.GetAction(), shift_s + Startable::Second(entry));
            });
        };
        if (!Startable::Is(entry) || std::ranges::none_of(hours, mayBeIn))
            continue;
        const QString text = Concerned({&entry, Startable::Second(entry), days.Of(*entry.GetAction())}, hours, today);
        if (!text.isEmpty())
            findings.Add({entry.line.number, FindingKind::CLOCK_CHANGE, Entry::FieldName(FIELD_START_TIME),
                          QStringLiteral("the clocks are changed around this time: ") + text,
                          QStringLiteral("look at ozna-schedule dst, or write a time that is in no such hour")});
    }
}
