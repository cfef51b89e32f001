#include "RehearsalRun.h"

#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Progress.h"
#include "base/Terminal.h"
#include "check/RejectedText.h"
#include "engine/RunUp.h"
#include "engine/Workspace.h"
#include "text/StringUtils.h"
#include "words/CutText.h"

#include <algorithm>
#include <utility>

namespace
{

const QString PLAYLISTS = QStringLiteral("playlists");
const QString ZONE = QStringLiteral("tz");
const QString FROM = QStringLiteral("from");
const QString DAYS = QStringLiteral("days");
const QString OLDER_STREAM =
    QStringLiteral("nothing stops the streams for certain: which one plays, and since when, depends on the load");
constexpr int MOST_DAYS = 36600;

} // namespace

void RehearsalRun::AddPlaceOptions(CommandLine& line)
{
    line.AddValue(PLAYLISTS, QStringLiteral("DIR"),
                  QStringLiteral("folder of the playlists (default: playlists/ or\n../playlists/ beside FILE, "
                                 "or FILE's own folder)"));
    line.AddValue(ZONE, QStringLiteral("ZONE"),
                  QStringLiteral("the device's time zone, as Europe/Rome (default:\nthis machine's)"));
}

void RehearsalRun::AddSpanOptions(CommandLine& line, int days)
{
    line.AddValue(FROM, QStringLiteral("MOMENT"),
                  QStringLiteral("2024-05-15, 2024-05-15T08:30 or ...:30:00, local\ntime (default: today)"));
    line.AddValue(DAYS, QStringLiteral("N"), QStringLiteral("how many days (default: %1)").arg(days),
                  QString::number(days));
    AddPlaceOptions(line);
}

void RehearsalRun::SetTimeZone(const CommandLine& line)
{
    Workspace::SetTimeZone(line.Value(ZONE));
}

bool RehearsalRun::HasTimeZone(const CommandLine& line)
{
    return line.Has(ZONE);
}

qint64 RehearsalRun::From_ms(const CommandLine& line)
{
    if (line.Has(FROM))
        return Moment::Parse_ms(QStringLiteral("--from"), line.Value(FROM));
    return Moment::FromLocal_ms(Moment::LocalDate(Moment::Now_ms()), QTime(0, 0));
}

qint64 RehearsalRun::Until_ms(const CommandLine& line, qint64 from_ms, std::optional<int> days)
{
    const int number = days && !line.Has(DAYS) ? *days : line.Number(DAYS, 1, MOST_DAYS);
    // Days have 23 to 25 hours: it is the same time of another date.
    return Moment::FromLocal_ms(Moment::LocalDate(from_ms).addDays(number), Moment::LocalTime(from_ms));
}

RehearsalRun::RehearsalRun(const CommandLine& line, const QString& file, std::optional<qint64> start_ms, qint64 from_ms,
                           qint64 until_ms, const RehearsalFollowers& followers, const QString& playlists,
                           const QString& where)
    : m_result{file, from_ms, until_ms}
{
    const Workspace workspace(file, playlists.isEmpty() ? line.Value(PLAYLISTS) : playlists);
    m_result.lines = ScheduleLine::ReadFile(workspace, file);
    static_cast<void>(TellRejected(file, m_result.lines, where));
    if (followers.read)
        followers.read(workspace);
    Rehearsal::Plan plan{.start_ms = start_ms.value_or(from_ms), .from_ms = from_ms, .until_ms = until_ms};
    bool areStreamsOlder = false;
    if (!start_ms)
    {
        const RunUp::Start start = RunUp(m_result.lines).Before(from_ms, until_ms);
        plan.start_ms = start.moment_ms;
        plan.isSettled = true;
        areStreamsOlder = start.areStreamsOlder;
    }
    const EventQueue::Take keep = [this](Event&& event) { m_result.events.push_back(std::move(event)); };
    const EventQueue::Take take = followers.take ? followers.take : keep;
    Rehearse(workspace, plan,
             {followers.noted,
              [&](Event&& event) {
                  const bool isOld = areStreamsOlder && event.type == TASK_PLAY_STREAM && event.moment_ms < from_ms;
                  if (isOld && event.kind == EventKind::START)
                  {
                      event.isStartKnown = false;
                      event.reason = OLDER_STREAM;
                  }
                  take(std::move(event));
              },
              followers.isEnough, followers.requested});
}

void RehearsalRun::Rehearse(const Workspace& workspace, const Rehearsal::Plan& plan,
                            const RehearsalFollowers& followers)
{
    Rehearsal rehearsal(workspace, plan);
    rehearsal.SetNoted(followers.noted);
    rehearsal.SetRequested(followers.requested);
    rehearsal.SetTake([&](Event&& event) {
        m_result.active.insert(event.lineNumber);
        followers.take(std::move(event));
    });
    Progress progress;
    bool hasEnough = false;
    const bool isWhole = rehearsal.Run([&](double part) {
        const auto done_ms = static_cast<qint64>(part * static_cast<double>(plan.until_ms - plan.start_ms));
        hasEnough = followers.isEnough && followers.isEnough(plan.start_ms + done_ms);
        return !hasEnough && progress.Show(part);
    });
    if (isWhole)
        return;
    m_result.end_ms = std::max(rehearsal.Reached_ms(), plan.from_ms);
    m_result.isCut = !hasEnough;
}

void RehearsalRun::TellCut() const
{
    if (m_result.isCut)
        Terminal::PrintError(
            QStringLiteral("%1: %2\n").arg(StringUtils::Harmless(m_result.file), CutText::Of(m_result)));
}

int RehearsalRun::TellRejected(const QString& file, std::vector<ScheduleLine>& lines, const QString& where)
{
    int rejected = 0;
    for (ScheduleLine& line : lines)
    {
        if (!line.IsRejected())
            continue;
        ++rejected;
        Terminal::PrintError(QStringLiteral("%1:%2: error: %3%4\n")
                                 .arg(StringUtils::Harmless(file), QString::number(line.number), where,
                                      StringUtils::Harmless(RejectedText::Of(line))));
    }
    return rejected;
}

int RehearsalRun::Status() const
{
    if (m_result.isCut)
        return ExitStatus::INTERRUPTED;
    return m_result.Rejected() > 0 ? ExitStatus::ERRORS : ExitStatus::CLEAN;
}
