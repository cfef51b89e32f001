#include "ClockChangeText.h"
#include "SpotDates.h"
#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Progress.h"
#include "base/Terminal.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "engine/Rehearsal.h"
#include "engine/RunUp.h"
#include "engine/Workspace.h"
#include "words/LineNotes.h"

#include <algorithm>
#include <iterator>

namespace
{

const QString YEARS = QStringLiteral("years");
const QString FROM = QStringLiteral("from");
const QString PLAYLISTS = QStringLiteral("playlists");
constexpr int USUAL_YEARS = 5;
constexpr int MOST_YEARS = 100;

using Span = SpotDates::Span;

// The day of the change, with the days before and after it.
Span Around(const ClockChange& change)
{
    const QDate date = Moment::LocalDate(change.moment_ms);
    return {Moment::FromLocal_ms(date.addDays(-1), QTime(0, 0)), Moment::FromLocal_ms(date.addDays(2), QTime(0, 0))};
}

// Rehearses spans one after the other, with one bar of progress for all of them.
class Rehearsals final
{
public:
    Rehearsals(const Workspace& workspace, const std::vector<ScheduleLine>& lines, size_t count)
        : m_workspace(workspace)
        , m_runUp(lines)
        , m_count(count)
    {
    }

    // What happens in the next span; nothing when the user has asked for an end.
    std::vector<Event> Next(const Span& span)
    {
        if (m_isEnded)
            return {};
        const qint64 start_ms = m_runUp.Before(span.begin_ms, span.end_ms).moment_ms;
        Rehearsal rehearsal(
            m_workspace, {.start_ms = start_ms, .from_ms = span.begin_ms, .until_ms = span.end_ms, .isSettled = true});
        m_isEnded = !rehearsal.Run([this](double part) {
            return m_progress.Show((static_cast<double>(m_done) + part) / static_cast<double>(m_count));
        });
        ++m_done;
        return rehearsal.Events();
    }

    [[nodiscard]] bool IsEnded() const { return m_isEnded; }

private:
    const Workspace& m_workspace;
    const RunUp m_runUp;
    Progress m_progress;
    const size_t m_count;
    size_t m_done = 0;
    bool m_isEnded = false;
};

// What does not start, or by chance, on any day.
QString NotesText(const std::vector<ScheduleLine>& lines, LinePhrases& phrases)
{
    QString text;
    for (const LineNotes::Note& note : LineNotes::Of(lines))
    {
        const bool isEntry = lines.at(static_cast<size_t>(note.line) - 1).action != nullptr;
        text += QStringLiteral("  %1%2 %3\n")
                    .arg(isEntry ? phrases.Of(note.line) : QStringLiteral("line %1").arg(note.line),
                         isEntry ? QStringLiteral(":") : QString(), note.text);
    }
    return text.isEmpty() ? text : QStringLiteral("Lines that do not always start at their time:\n") + text;
}

QString NothingText(qint64 from_ms, qint64 until_ms)
{
    return QStringLiteral("From %1 to %2 no start is touched by a change of the clocks.\n")
        .arg(Moment::DateText(Moment::LocalDate(from_ms)), Moment::DateText(Moment::LocalDate(until_ms)));
}

} // namespace

int Commands::Dst(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("dst"),
                     QStringLiteral("Shows what becomes of starts in the hours that are left out or come twice when\n"
                                    "the clocks are changed, and which spot dates come on another day, as they go by\n"
                                    "UTC: what the daemon does on each of these days. Names the lines that never\n"
                                    "start at their time, or by chance."),
                     {QStringLiteral("FILE")});
    line.AddValue(FROM, QStringLiteral("MOMENT"), QStringLiteral("2024-05-15, local time (default: today)"));
    line.AddValue(YEARS, QStringLiteral("N"), QStringLiteral("how many years (default: %1)").arg(USUAL_YEARS),
                  QString::number(USUAL_YEARS));
    RehearsalRun::AddPlaceOptions(line);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    RehearsalRun::SetTimeZone(line);
    const qint64 from_ms = RehearsalRun::From_ms(line);
    const QDate first = Moment::LocalDate(from_ms);
    const QDate last = first.addYears(line.Number(YEARS, 1, MOST_YEARS));
    const qint64 until_ms = Moment::FromLocal_ms(last, QTime(0, 0));

    const Workspace workspace(line.Operand(0), line.Value(PLAYLISTS));
    std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, line.Operand(0));
    const int rejected = RehearsalRun::TellRejected(line.Operand(0), lines);
    const std::vector<ClockChange> changes = ClockChange::Between(from_ms, until_ms);
    const std::vector<Span> spans = SpotDates::Spans(lines, first, last.addDays(-1));

    Rehearsals rehearsals(workspace, lines, changes.size() + spans.size());
    std::vector<std::vector<Event>> nights;
    nights.reserve(changes.size());
    std::ranges::transform(changes, std::back_inserter(nights),
                           [&](const ClockChange& change) { return rehearsals.Next(Around(change)); });
    std::vector<Event> spots;
    for (const Span& span : spans)
        std::ranges::move(rehearsals.Next(span), std::back_inserter(spots));

    LinePhrases phrases(workspace, lines);
    QString text;
    for (size_t i = 0; i < changes.size(); ++i)
        text += ClockChangeText::Of(changes[i], nights[i], phrases);
    text += SpotDates::Text(lines, spots, phrases);
    if (text.isEmpty() && !rehearsals.IsEnded())
        text = NothingText(from_ms, until_ms);
    text += NotesText(lines, phrases);
    Terminal::Print(text);
    if (rehearsals.IsEnded())
    {
        Terminal::PrintError(QStringLiteral("interrupted: not all dates are shown\n"));
        return ExitStatus::INTERRUPTED;
    }
    return rejected > 0 ? ExitStatus::ERRORS : ExitStatus::CLEAN;
}
