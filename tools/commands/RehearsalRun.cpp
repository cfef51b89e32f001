#include "RehearsalRun.h"

#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Progress.h"
#include "base/Terminal.h"
#include "engine/Rehearsal.h"
#include "engine/Workspace.h"

#include <algorithm>
#include <utility>

namespace
{

const QString PLAYLISTS = QStringLiteral("playlists");
const QString ZONE = QStringLiteral("tz");
const QString FROM = QStringLiteral("from");
const QString DAYS = QStringLiteral("days");
constexpr int MOST_DAYS = 36600;

} // namespace

void RehearsalRun::AddPlaceOptions(CommandLine& line)
{
    line.AddValue(PLAYLISTS, QStringLiteral("DIR"),
                  QStringLiteral("folder of the playlists (default: the folder\n\"playlists\" beside FILE's, "
                                 "or FILE's own)"));
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
                           qint64 until_ms, const RehearsalFollowers& followers)
    : m_result{file, from_ms, until_ms}
{
    const Workspace workspace(file, line.Value(PLAYLISTS));
    m_result.lines = ScheduleLine::ReadFile(workspace, file);
    static_cast<void>(TellRejected(file, m_result.lines));
    const qint64 begin_ms = start_ms.value_or(Rehearsal::LongBefore_ms(from_ms));
    Rehearsal rehearsal(workspace, {begin_ms, from_ms, until_ms});
    rehearsal.SetNoted(followers.noted);
    rehearsal.SetTake([&](Event&& event) {
        m_result.active.insert(event.lineNumber);
        if (followers.take)
            followers.take(std::move(event));
        else
            m_result.events.push_back(std::move(event));
    });
    Progress progress;
    qint64 reached_ms = from_ms;
    bool hasEnough = false;
    m_isWhole = rehearsal.Run([&](double part) {
        reached_ms = begin_ms + static_cast<qint64>(part * static_cast<double>(until_ms - begin_ms));
        hasEnough = followers.isEnough && followers.isEnough(reached_ms);
        return !hasEnough && progress.Show(part);
    });
    if (!m_isWhole)
        m_result.end_ms = std::max(reached_ms, from_ms);
    m_isWhole = m_isWhole || hasEnough;
}

int RehearsalRun::TellRejected(const QString& file, const std::vector<ScheduleLine>& lines)
{
    int rejected = 0;
    for (const ScheduleLine& line : lines)
    {
        if (!line.IsRejected())
            continue;
        ++rejected;
        Terminal::PrintError(QStringLiteral("%1:%2: error: %3: the daemon leaves the line out\n")
                                 .arg(Terminal::Harmless(file), QString::number(line.number),
                                      Terminal::Harmless(line.rejected->reason)));
    }
    return rejected;
}

int RehearsalRun::Status() const
{
    if (!m_isWhole)
        return ExitStatus::INTERRUPTED;
    return m_result.Rejected() > 0 ? ExitStatus::ERRORS : ExitStatus::CLEAN;
}
