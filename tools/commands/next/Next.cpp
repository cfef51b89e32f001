#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "commands/RehearsalText.h"
#include "text/StringUtils.h"
#include "words/CutText.h"
#include "words/EventText.h"
#include "words/LineNotes.h"
#include "words/Subjects.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <queue>
#include <utility>
#include <vector>

namespace
{

const QString COUNT = QStringLiteral("n");
const QString FROM = QStringLiteral("from");
const QString JSON = QStringLiteral("json");
constexpr int USUAL_COUNT = 10;
constexpr int GREATEST_COUNT = 10000;
constexpr int LONGEST_YEARS = 2; // what is due on a certain day of the week or of a year has come by then

constexpr int SPAN_WIDTH = 16;
constexpr int TASK_WIDTH = 14;
constexpr int LINE_COLUMN = 70; // a number of four digits ends before the edge
constexpr int MOST_COLUMNS = 80;
const QString INDENT = QStringLiteral("                         "); // below the span
const QString CUT = QStringLiteral("...");

// What comes by chance may come, whatever becomes of it here.
bool IsNext(const Event& event, qint64 from_ms)
{
    const bool mayStart = event.kind == EventKind::START || (event.kind == EventKind::MISSED && event.IsByChance());
    return mayStart && event.Start_ms() >= from_ms;
}

// A column, and at least one blank behind it.
QString Column(const QString& text, qsizetype width)
{
    return text.leftJustified(width - 1) + u' ';
}

QString Shortened(const QString& text, qsizetype width)
{
    return text.size() <= width ? text : text.left(std::max<qsizetype>(width - CUT.size(), 0)) + CUT;
}

QString MomentText(qint64 moment_ms)
{
    return Moment::DateText(Moment::LocalDate(moment_ms)) + u' ' + Moment::TimeText(moment_ms);
}

// What is unlike the plan: the moment of the start, and its marks.
QString Notes(const Event& event, qint64 from_ms)
{
    QStringList notes;
    const bool isPlain = event.Start_ms() / Moment::MS_PER_S == event.due_ms / Moment::MS_PER_S;
    if (isPlain && event.leftOut.isValid() && event.delay_s == 0)
        notes.append(QStringLiteral("a time that the clocks leave out"));
    else if (!isPlain || event.leftOut.isValid())
        notes.append(QStringLiteral("starts ") + MomentText(event.Start_ms()));
    notes.append(event.moment_ms < from_ms ? QString() : EventText::Mark(event, from_ms));
    notes.append(EventText::Untimed(event));
    notes.removeAll(QString());
    return notes.join(QStringLiteral(", "));
}

QString Row(const Event& event, qint64 from_ms)
{
    const QString line = QStringLiteral("line %1").arg(event.lineNumber);
    QString text = Moment::DateText(Moment::LocalDate(event.due_ms)) + u' ' + Moment::TimeText(event.DueTime()) +
                   QStringLiteral("  ");
    text +=
        Column(QStringLiteral("in ") + Moment::SpanText((event.Start_ms() - from_ms) / Moment::MS_PER_S), SPAN_WIDTH);
    text += Column(event.taskName, TASK_WIDTH);
    const qsizetype end = std::min<qsizetype>(LINE_COLUMN, MOST_COLUMNS - line.size());
    const qsizetype width = std::max<qsizetype>(end - text.size(), 1);
    const QString subject = StringUtils::Harmless(EventText::Subject(event));
    // Of what is too long the name is cut.
    const QString track =
        event.type == TASK_PLAY_PLAYLIST && subject.size() >= width ? Subjects::FromTrack(event.requests) : QString();
    text += Column(Shortened(subject.chopped(track.isEmpty() ? 0 : track.size() + 1), width - 1), width) + line + u'\n';
    QStringList parts{track, Notes(event, from_ms)};
    parts.removeAll(QString());
    const QString notes = parts.join(QStringLiteral(", "));
    return notes.isEmpty() ? text : text + INDENT + Terminal::Coloured(notes, Terminal::Colour::YELLOW) + u'\n';
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
            m_starts.push(event.Start_ms());
    }

    // How many of them start before reached_ms, which never goes back. What is asked for ahead of its time stands
    // before what comes earlier.
    [[nodiscard]] int Before(qint64 reached_ms)
    {
        for (; !m_starts.empty() && m_starts.top() < reached_ms; m_starts.pop())
            ++m_count;
        return m_count;
    }

private:
    const qint64 m_from_ms;
    std::priority_queue<qint64, std::vector<qint64>, std::greater<>> m_starts; // that have not been counted
    int m_count = 0;
};

QString FewerText(const RehearsalResult& run, size_t found)
{
    const QString what = found == 0   ? QStringLiteral("no start")
                         : found == 1 ? QStringLiteral("only 1 start")
                                      : QStringLiteral("only %1 starts").arg(found);
    return QStringLiteral("%1 from %2 to %3\n").arg(what, MomentText(run.begin_ms), MomentText(run.end_ms));
}

QString Table(const std::vector<Event>& starts, size_t wanted, const RehearsalResult& run)
{
    QString text;
    for (const Event& event : starts)
        text += Row(event, run.begin_ms);
    if (starts.size() < wanted)
        text += FewerText(run, starts.size());
    for (const LineNotes::Note& note : LineNotes::Of(run.lines))
        text += QStringLiteral("line %1 %2\n").arg(note.line).arg(note.text);
    return run.isCut ? text + CutText::Of(run) + u'\n' : text;
}

QString Json(const std::vector<Event>& starts, const RehearsalResult& run)
{
    const std::unique_ptr<RehearsalText> json = RehearsalText::Json(run.begin_ms, RehearsalText::Idle::ON_ANY_DAY);
    QString text = json->Head();
    for (const Event& event : starts)
        text += json->Of(event);
    return text + json->Foot(run);
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
    line.AddFlag(JSON, QStringLiteral("for machines: one object, like that of rehearse"));
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
    run.TellCut();
    if (run.Result().isCut && !run.Result().HasBegun())
        return run.Status();
    std::ranges::stable_sort(starts, {}, &Event::Start_ms);
    starts.resize(std::min(starts.size(), static_cast<size_t>(count)));
    Terminal::Print(line.Has(JSON) ? Json(starts, run.Result())
                                   : Table(starts, static_cast<size_t>(count), run.Result()));
    return run.Status();
}
