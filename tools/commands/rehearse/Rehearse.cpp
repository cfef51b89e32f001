#include "PageFollower.h"
#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Progress.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "commands/RehearsalText.h"
#include "html/Html.h"
#include "html/Page.h"
#include "html/WeekLayout.h"
#include "text/StringUtils.h"

#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <memory>
#include <utility>

namespace
{

const QString START_AT = QStringLiteral("start-at");
const QString JSON = QStringLiteral("json");
const QString CSV = QStringLiteral("csv");
const QString HTML = QStringLiteral("html");
const QString ICS = QStringLiteral("ics");
const QString STANDARD_OUTPUT = QStringLiteral("-");
constexpr int CALENDAR_DAYS = 30;

// The page takes its file's place: a device or a pipe would be lost, and so would the schedule.
void CheckPage(const QString& name, const QString& schedule)
{
    const QFileInfo page(name);
    if (name == STANDARD_OUTPUT || !page.exists())
        return;
    if (!page.isFile())
        throw ToolError(QStringLiteral("--html: %1 is not a file").arg(name));
    if (page.canonicalFilePath() == QFileInfo(schedule).canonicalFilePath())
        throw ToolError(QStringLiteral("--html: %1 is the schedule itself").arg(name));
}

// The file is there whole, or as it was before. What is cut takes no page's place.
void WritePage(const RehearsalResult& run, const PageNotes& notes, const QString& name)
{
    if (run.isCut && !run.HasBegun())
        return;
    if (run.isCut && name != STANDARD_OUTPUT && QFileInfo::exists(name))
    {
        Terminal::PrintError(QStringLiteral("%1: left as it was\n").arg(StringUtils::Harmless(name)));
        return;
    }
    const QString page = Page::Markup(run, notes);
    if (name == STANDARD_OUTPUT)
    {
        Terminal::Print(page);
        return;
    }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(page.toUtf8()) < 0 || !file.commit())
        throw ToolError(QStringLiteral("%1: %2").arg(name, file.errorString()));
    const QDate last = Moment::LocalDate(std::max(run.begin_ms, run.end_ms - 1));
    const auto days = static_cast<qsizetype>(Moment::LocalDate(run.begin_ms).daysTo(last)) + 1;
    Terminal::Print(QStringLiteral("%1: %2, %3\n")
                        .arg(StringUtils::Harmless(name), Html::Counted(days, "day"),
                             Html::Counted(static_cast<qsizetype>(run.events.size()), "event")));
}

// Writes a rehearsal in large pieces, while it runs.
class Writer final
{
public:
    explicit Writer(std::unique_ptr<RehearsalText> text)
        : m_text(std::move(text))
        , m_waiting(m_text->Head())
    {
    }

    void Take(const Event& event)
    {
        m_waiting += m_text->Of(event);
        if (m_waiting.size() >= PIECE)
            Print();
    }

    // Of what was cut off before its beginning nothing has been written.
    void Finish(const RehearsalResult& run)
    {
        if (run.isCut && !run.HasBegun())
            return;
        m_waiting += m_text->Foot(run);
        Print();
    }

private:
    static constexpr qsizetype PIECE = 65536; // characters

    void Print()
    {
        if (Terminal::IsOutputTerminal())
            Progress::Hide();
        Terminal::Print(m_waiting);
        m_waiting.clear();
    }

    const std::unique_ptr<RehearsalText> m_text;
    QString m_waiting;
};

std::unique_ptr<RehearsalText> TextFor(const CommandLine& line, qint64 from_ms, qint64 until_ms)
{
    if (line.Has(ICS))
        return RehearsalText::Calendar(from_ms, until_ms, line.Operand(0));
    if (line.Has(JSON))
        return RehearsalText::Json(from_ms);
    return line.Has(CSV) ? RehearsalText::Csv(from_ms) : RehearsalText::Table(from_ms);
}

} // namespace

int Commands::Rehearse(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("rehearse"),
                     QStringLiteral("Shows every request that the daemon would send, in order of time."),
                     {QStringLiteral("FILE")});
    RehearsalRun::AddSpanOptions(line, 1);
    line.AddValue(START_AT, QStringLiteral("MOMENT"),
                  QStringLiteral("the daemon starts, or loads the schedule, then\n"
                                 "(default: long ago, so that nothing is left of\nthe load)"));
    line.AddFlag(JSON, QStringLiteral("for machines: one object with all events"));
    line.AddFlag(CSV, QStringLiteral("for spreadsheets: a row for each request"));
    line.AddValue(
        HTML, QStringLiteral("OUT"),
        QStringLiteral("for a browser: a page of a week, or of --days, is\nwritten to OUT (\"-\": standard output)"));
    line.AddFlag(ICS, QStringLiteral("for calendars: the starts of 30 days, or of --days"));
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;
    if (int{line.Has(JSON)} + int{line.Has(CSV)} + int{line.Has(HTML)} + int{line.Has(ICS)} > 1)
        throw ToolError(QStringLiteral("--json, --csv, --html and --ics exclude each other"));

    if (line.Has(HTML))
        CheckPage(line.Value(HTML), line.Operand(0));

    RehearsalRun::SetTimeZone(line);
    std::optional<qint64> start_ms;
    if (line.Has(START_AT))
        start_ms = Moment::Parse_ms(QStringLiteral("--start-at"), line.Value(START_AT));
    const qint64 from_ms = start_ms && !line.Has(QStringLiteral("from")) ? *start_ms : RehearsalRun::From_ms(line);
    if (start_ms && *start_ms > from_ms)
        throw ToolError(QStringLiteral("--start-at: comes after --from"));
    const auto days = line.Has(HTML)  ? std::optional<int>(WeekLayout::WEEK_DAYS)
                      : line.Has(ICS) ? std::optional<int>(CALENDAR_DAYS)
                                      : std::nullopt;
    const qint64 until_ms = RehearsalRun::Until_ms(line, from_ms, days);
    if (line.Has(HTML))
    {
        PageFollower follower(from_ms);
        const RehearsalRun run(line, line.Operand(0), start_ms, from_ms, until_ms, follower.Followers());
        run.TellCut();
        WritePage(run.Result(), follower.Notes(), line.Value(HTML));
        return run.Status();
    }
    Writer writer(TextFor(line, from_ms, until_ms));
    const RehearsalRun run(line, line.Operand(0), start_ms, from_ms, until_ms,
                           {.take = [&](const Event& event) { writer.Take(event); }});
    run.TellCut();
    writer.Finish(run.Result());
    return run.Status();
}
