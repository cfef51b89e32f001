#include "ScheduleDiff.h"

#include "base/Moment.h"
#include "base/Terminal.h"
#include "engine/RehearsalResult.h"
#include "text/ScheduleFields.h"
#include "words/DatesText.h"
#include "words/Kinds.h"

#include <QTime>

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace
{

using Terminal::Colour;

const QString BY_CHANCE = QStringLiteral(", by chance");

constexpr int TIME_WIDTH = 22;
constexpr int PHRASE_WIDTH = 44;

// What is asked for, without the moment.
struct Content
{
    QString phrase;
    QString requests;

    bool operator<(const Content& other) const
    {
        return std::tie(phrase, requests) < std::tie(other.phrase, other.requests);
    }
};

// One thing that is asked for on one date: at what times, and by which lines.
struct Start
{
    qint64 due_ms;
    int line;
};
using StartsOfDays = std::map<QDate, std::map<Content, std::vector<Start>>>;

struct Change
{
    QTime before; // invalid: it comes
    QTime after;  // invalid: it goes
    Content content;
    int lineBefore;
    int lineAfter;

    [[nodiscard]] QTime First() const { return before.isValid() ? before : after; }
    bool operator<(const Change& other) const
    {
        const QTime first = First();
        const QTime otherFirst = other.First();
        // What goes stands before what comes in its place.
        return std::tie(first, after, before, content, lineBefore, lineAfter) <
               std::tie(otherFirst, other.after, other.before, other.content, other.lineBefore, other.lineAfter);
    }
};
using Changes = std::map<Change, std::set<QDate>>;

// The moment is part of a message's request: that it is another one does not make it another message.
Content ContentOf(const Event& event, const RehearsalResult& run)
{
    const ScheduleLine& line = run.lines.at(static_cast<size_t>(event.lineNumber) - 1);
    // Whether it has come in this rehearsal says nothing.
    if (event.IsByChance())
        return {line.text.section(QLatin1Char(ScheduleFields::FIELD_SEPARATOR), ScheduleFields::FIELD_TASK) + BY_CHANCE,
                {}};
    QString requests = QString::number(event.type);
    for (Request request : event.requests)
    {
        std::ranges::replace(request.arguments, QVariant(Moment::TimeText(event.due_ms)), QVariant(QString()));
        requests += u'\n' + request.Text();
    }
    return {Kinds::Of(event.type).phrase(*line.action->m_task, event.requests), requests};
}

StartsOfDays StartsOf(const RehearsalResult& run)
{
    StartsOfDays starts;
    for (const Event& event : run.events)
    {
        const bool isInside = std::max(event.due_ms, event.moment_ms) >= run.begin_ms;
        const bool mayStart = event.kind == EventKind::START || event.IsByChance();
        if (mayStart && isInside)
            starts[Moment::LocalDate(event.due_ms)][ContentOf(event, run)].push_back({event.due_ms, event.lineNumber});
    }
    return starts;
}

void TakeCommon(std::vector<Start>& before, std::vector<Start>& after)
{
    std::erase_if(before, [&](const Start& start) {
        const auto same = std::ranges::find_if(after, [&](const Start& other) { return other.due_ms == start.due_ms; });
        if (same == after.end())
            return false;
        after.erase(same);
        return true;
    });
}

QTime TimeOf(const std::vector<Start>& starts, size_t index)
{
    return index < starts.size() ? Moment::LocalTime(starts[index].due_ms) : QTime();
}

int LineOf(const std::vector<Start>& starts, size_t index)
{
    return index < starts.size() ? starts[index].line : 0;
}

Changes ChangesOf(StartsOfDays before, StartsOfDays after)
{
    Changes changes;
    for (const auto& [date, contents] : before)
    {
        for (const auto& entry : contents)
            static_cast<void>(after[date][entry.first]);
    }
    for (auto& [date, contents] : after)
    {
        for (auto& [content, newStarts] : contents)
        {
            std::vector<Start>& oldStarts = before[date][content];
            TakeCommon(oldStarts, newStarts);
            for (size_t i = 0; i < std::max(oldStarts.size(), newStarts.size()); ++i)
            {
                const Change change{TimeOf(oldStarts, i), TimeOf(newStarts, i), content, LineOf(oldStarts, i),
                                    LineOf(newStarts, i)};
                changes[change].insert(date);
            }
        }
    }
    return changes;
}

QString LineNumbers(const Change& change)
{
    if (change.lineBefore != 0 && change.lineAfter != 0)
        return QStringLiteral("line %1, then %2").arg(change.lineBefore).arg(change.lineAfter);
    return QStringLiteral("line %1").arg(std::max(change.lineBefore, change.lineAfter));
}

QString Row(const Change& change, const QString& dates)
{
    const QString format = QStringLiteral("HH:mm:ss");
    const bool isMove = change.before.isValid() && change.after.isValid();
    QString text = QStringLiteral("%1 %2").arg(isMove                    ? QStringLiteral("~")
                                               : change.before.isValid() ? QStringLiteral("-")
                                                                         : QStringLiteral("+"),
                                               change.First().toString(format));
    if (isMove)
        text += QStringLiteral(" -> ") + change.after.toString(format);
    text = text.leftJustified(TIME_WIDTH) + QStringLiteral("  ") +
           Terminal::Harmless(change.content.phrase).leftJustified(PHRASE_WIDTH) +
           QStringLiteral("  %1  (%2)").arg(dates, LineNumbers(change));
    const Colour colour = isMove ? Colour::YELLOW : change.before.isValid() ? Colour::RED : Colour::GREEN;
    return Terminal::Coloured(text, colour) + u'\n';
}

} // namespace

QString ScheduleDiff::Text(const RehearsalResult& before, const RehearsalResult& after)
{
    QString text;
    const qint64 until_ms = std::min(before.end_ms, after.end_ms);
    for (const auto& [change, dates] : ChangesOf(StartsOf(before), StartsOf(after)))
        text += Row(change, DatesText::Of(dates, change.First(), before.begin_ms, until_ms));
    return text;
}
