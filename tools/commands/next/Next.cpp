#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "words/EventText.h"
#include "words/LineNotes.h"

#include <algorithm>
#include <functional>
#include <queue>
#include <utility>
#include <vector>

namespace
{

const QString COUNT = QStringLiteral("n");
const QString FROM = QStringLiteral("from");
constexpr int USUAL_COUNT = 10;
constexpr int GREATEST_COUNT = 10000;
constexpr int LONGEST_YEARS = 2; // what is due on a certain day of the week or of a year has come by then

constexpr int SPAN_WIDTH = 16;
constexpr int TASK_WIDTH = 18;
constexpr int SUBJECT_WIDTH = 26;

// A message is asked for ahead of its time, a late playlist starts behind it.
qint64 StartOf(const Event& event)
{
    return std::max(event.moment_ms, event.due_ms);
}

// What comes by chance may come, whatever becomes of it here.
bool IsNext(const Event& event, qint64 from_ms)
{
    const bool mayStart = event.kind == EventKind::START || (event.kind == EventKind::MISSED && event.IsByChance());
    return mayStart && StartOf(event) >= from_ms;
}

// A column, and at least one blank behind it.
QString Column(const QString& text, int width)
{
    return text.leftJustified(width - 1) + u' ';
}

QString Row(const Event& event, qint64 from_ms)
{
    QString text = QStringLiteral("%1 %2  ").arg(Moment::DateText(Moment::LocalDate(event.due_ms)),
                                                 Moment::TimeText(event.due_ms));
    text += Column(QStringLiteral("in ") + Moment::SpanText((StartOf(event) - from_ms) / Moment::MS_PER_S), SPAN_WIDTH);
    text += Column(event.taskName, TASK_WIDTH) + Column(Terminal::Harmless(EventText::Subject(event)), SUBJECT_WIDTH);
    text += QStringLiteral("line %1").arg(event.lineNumber);
    const QString mark = event.moment_ms < from_ms ? QString() : EventText::Mark(event, from_ms);
    if (!mark.isEmpty())
        text += QStringLiteral("  ") + Terminal::Coloured(mark, Terminal::Colour::YELLOW);
    return text + u'\n';
}

// Counts the starts to come as they come about.
class Counter final
{
public:
    explicit Counter(qint64 from_ms)
        : m_from_ms(from_ms)
    {
    }

    void Note(const Event& event)
    {
        if (IsNext(event, m_from_ms))
            m_dues.push(event.due_ms);
    }

    // How many of them are due before reached_ms, which never goes back. What is asked for ahead of its time stands
    // before what comes earlier.
    [[nodiscard]] int Before(qint64 reached_ms)
    {
        for (; !m_dues.empty() && m_dues.top() < reached_ms; m_dues.pop())
            ++m_count;
        return m_count;
    }

private:
    const qint64 m_from_ms;
    std::priority_queue<qint64, std::vector<qint64>, std::greater<>> m_dues; // that have not been counted
    int m_count = 0;
};

QString FewerText(const RehearsalResult& run, size_t found)
{
    const QString what = found == 0   ? QStringLiteral("no start")
                         : found == 1 ? QStringLiteral("only 1 start")
                                      : QStringLiteral("only %1 starts").arg(found);
    return QStringLiteral("%1 from %2 %3 to %4 %5\n")
        .arg(what, Moment::DateText(Moment::LocalDate(run.begin_ms)), Moment::TimeText(run.begin_ms),
             Moment::DateText(Moment::LocalDate(run.end_ms)), Moment::TimeText(run.end_ms));
}

} // namespace

int Commands::Next(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("next"),
                     QStringLiteral("Shows what starts next, and in how long, like a timetable. It looks two years\n"
                                    "ahead. What is due and does not start is no start: see rehearse."),
                     {QStringLiteral("FILE")});
    line.AddValue(COUNT, QStringLiteral("N"), QStringLiteral("how many starts (default: %1)").arg(USUAL_COUNT),
                  QString::number(USUAL_COUNT));
    line.AddValue(FROM, QStringLiteral("MOMENT"),
                  QStringLiteral("2024-05-15, 2024-05-15T08:30 or ...:30:00, local\ntime (default: now)"));
    RehearsalRun::AddPlaceOptions(line);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    RehearsalRun::SetTimeZone(line);
    const int count = line.Number(COUNT, 1, GREATEST_COUNT);
    const qint64 from_ms = line.Has(FROM) ? RehearsalRun::From_ms(line) : Moment::Now_ms();
    const qint64 until_ms =
        Moment::FromLocal_ms(Moment::LocalDate(from_ms).addYears(LONGEST_YEARS), Moment::LocalTime(from_ms));
    Counter counter(from_ms);
    std::vector<Event> starts;
    const RehearsalRun run(line, line.Operand(0), std::nullopt, from_ms, until_ms,
                           {[&](const Event& event) { counter.Note(event); },
                            [&](Event&& event) {
                                if (IsNext(event, from_ms))
                                    starts.push_back(std::move(event));
                            },
                            [&](qint64 reached_ms) { return counter.Before(reached_ms) >= count; }});
    std::ranges::stable_sort(starts, {}, &Event::due_ms);
    starts.resize(std::min(starts.size(), static_cast<size_t>(count)));
    QString text;
    for (const Event& event : starts)
        text += Row(event, from_ms);
    if (starts.size() < static_cast<size_t>(count))
        text += FewerText(run.Result(), starts.size());
    for (const LineNotes::Note& note : LineNotes::Of(run.Result().lines))
        text += QStringLiteral("line %1 %2\n").arg(note.line).arg(note.text);
    Terminal::Print(text);
    return run.Status();
}
