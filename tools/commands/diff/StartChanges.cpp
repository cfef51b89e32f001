#include "StartChanges.h"

#include "base/Moment.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace
{

using Starts = std::vector<RequestedStart>;

// What one schedule asks for on a date, and the other does not at that moment.
struct Rest
{
    Starts before;
    Starts after;
};
using Rests = std::map<QDate, Rest>;

QString ExactText(const Starts& starts)
{
    QString text;
    for (const RequestedStart& start : starts)
        text += start.exact;
    return text;
}

QStringList Told(const Starts& starts)
{
    QStringList texts;
    for (const RequestedStart& start : starts)
        texts.append(QStringLiteral("%1 (line %2)").arg(start.phrase).arg(start.line));
    return texts;
}

// Takes out of both, in order, what is equal by key, and hands each such pair on.
template <typename Key, typename Take> void Pair(Starts& before, Starts& after, const Key& key, const Take& take)
{
    std::erase_if(before, [&](const RequestedStart& start) {
        const auto same =
            std::ranges::find_if(after, [&](const RequestedStart& other) { return key(start) == key(other); });
        if (same == after.end())
            return false;
        take(start, *same);
        after.erase(same);
        return true;
    });
}

// Leaves out what is the same at both ends.
void Trim(QStringList& left, QStringList& right)
{
    while (!left.isEmpty() && !right.isEmpty() && left.first() == right.first())
    {
        left.removeFirst();
        right.removeFirst();
    }
    while (!left.isEmpty() && !right.isEmpty() && left.last() == right.last())
    {
        left.removeLast();
        right.removeLast();
    }
}

// All have one moment. What both have may come in another order.
void CompareMoment(Starts before, Starts after, StartChanges& changes, Rests& rests)
{
    if (ExactText(before) == ExactText(after))
        return;
    const qint64 moment_ms = (before.empty() ? after : before).front().moment_ms;
    Starts commonBefore;
    Starts restAfter = after;
    Pair(
        before, restAfter, [](const RequestedStart& start) { return start.exact; },
        [&](const RequestedStart& start, const RequestedStart&) { commonBefore.push_back(start); });
    // Of several that are the same the last ones are left over.
    Starts commonAfter = std::move(after);
    for (const RequestedStart& rest : restAfter)
        commonAfter.erase(
            std::ranges::find(commonAfter.rbegin(), commonAfter.rend(), rest.exact, &RequestedStart::exact).base() - 1);
    if (ExactText(commonBefore) != ExactText(commonAfter))
    {
        QStringList lost = Told(commonBefore);
        QStringList gained = Told(commonAfter);
        Trim(lost, gained);
        const QTime time = Moment::LocalTime(moment_ms);
        const QString phrase = QStringLiteral("another order of %1 starts").arg(commonBefore.size());
        changes[{time, time, phrase, {lost.join(QStringLiteral(", "))}, {gained.join(QStringLiteral(", "))}}].insert(
            Moment::LocalDate(moment_ms));
    }
    for (RequestedStart& start : before)
        rests[Moment::LocalDate(start.due_ms)].before.push_back(std::move(start));
    for (RequestedStart& start : restAfter)
        rests[Moment::LocalDate(start.due_ms)].after.push_back(std::move(start));
}

void RemoveCommon(QStringList& left, QStringList& right)
{
    left.removeIf([&](const QString& text) { return right.removeOne(text); });
}

StartChange Differing(const RequestedStart& before, const RequestedStart& after)
{
    QStringList lost = before.requests;
    QStringList gained = after.requests;
    RemoveCommon(lost, gained);
    if (lost.isEmpty() && gained.isEmpty() && before.moment_ms == after.moment_ms)
    {
        lost = before.requests;
        gained = after.requests;
    }
    // What comes by chance need not have asked for anything here.
    if (lost.isEmpty() && gained.isEmpty() && before.phrase != after.phrase)
    {
        lost = QStringList{before.phrase};
        gained = QStringList{after.phrase};
    }
    if (before.moment_ms != after.moment_ms && before.due_ms == after.due_ms)
    {
        const QString format = QStringLiteral("asked for at %1");
        lost.prepend(format.arg(Moment::TimeText(before.moment_ms)));
        gained.prepend(format.arg(Moment::TimeText(after.moment_ms)));
    }
    return {before.time, after.time, after.phrase, lost, gained, before.line, after.line};
}

void CompareRests(const QDate& date, Rest& rest, StartChanges& changes)
{
    std::ranges::stable_sort(rest.before, {}, &RequestedStart::due_ms);
    std::ranges::stable_sort(rest.after, {}, &RequestedStart::due_ms);
    const auto differ = [&](const RequestedStart& before, const RequestedStart& after) {
        changes[Differing(before, after)].insert(date);
    };
    Pair(
        rest.before, rest.after, [](const RequestedStart& start) { return std::pair(start.due_ms, start.content); },
        differ);
    Pair(
        rest.before, rest.after, [](const RequestedStart& start) { return start.content; },
        [&](const RequestedStart& before, const RequestedStart& after) {
            changes[{before.time, after.time, after.phrase, {}, {}, before.line, after.line}].insert(date);
        });
    Pair(
        rest.before, rest.after, [](const RequestedStart& start) { return std::pair(start.due_ms, start.phrase); },
        differ);
    Pair(
        rest.before, rest.after, [](const RequestedStart& start) { return start.phrase; }, differ);
    // Another value or file, in the place of the old one.
    Pair(
        rest.before, rest.after, [](const RequestedStart& start) { return std::pair(start.due_ms, start.type); },
        differ);
    for (const RequestedStart& start : rest.before)
        changes[{start.time, {}, start.phrase, {}, {}, start.line, 0}].insert(date);
    for (const RequestedStart& start : rest.after)
        changes[{{}, start.time, start.phrase, {}, {}, 0, start.line}].insert(date);
}

} // namespace

bool StartChange::operator<(const StartChange& other) const
{
    const QTime first = First();
    const QTime otherFirst = other.First();
    return std::tie(first, after, before, phrase, lost, gained, lineBefore, lineAfter) <
           std::tie(otherFirst, other.after, other.before, other.phrase, other.lost, other.gained, other.lineBefore,
                    other.lineAfter);
}

StartChanges StartDiff::Of(RequestedStarts before, RequestedStarts after)
{
    for (const auto& moment : before)
        static_cast<void>(after[moment.first]);
    StartChanges changes;
    Rests rests;
    for (auto& [moment_ms, starts] : after)
        CompareMoment(std::move(before[moment_ms]), std::move(starts), changes, rests);
    for (auto& [date, rest] : rests)
        CompareRests(date, rest, changes);
    return changes;
}
