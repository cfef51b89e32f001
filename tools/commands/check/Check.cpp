#include "CheckText.h"
#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "check/MediaFolder.h"
#include "check/Rules.h"
#include "commands/Commands.h"
#include "commands/RehearsalRun.h"
#include "control/PeerPresence.h"
#include "control/UserBus.h"
#include "engine/Workspace.h"

#include <optional>

namespace
{

const QString TODAY = QStringLiteral("today");
const QString STRICT = QStringLiteral("strict");
const QString JSON = QStringLiteral("json");
const QString PEERS = QStringLiteral("peers");
const QString MEDIA = QStringLiteral("media");
const QString PLAYLISTS = QStringLiteral("playlists");

QDate Today(const CommandLine& line)
{
    return Moment::LocalDate(line.Has(TODAY) ? Moment::Parse_ms(QStringLiteral("--today"), line.Value(TODAY))
                                             : Moment::Now_ms());
}

QStringList AbsentPeers()
{
    QStringList absent;
    for (const PeerPresence::Peer& peer : PeerPresence::Of(UserBus().ServiceNames()))
    {
        if (!peer.isPresent)
            absent.append(peer.name);
    }
    return absent;
}

} // namespace

int Commands::Check(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("check"),
                     QStringLiteral("Finds the lines that the daemon drops, or reads otherwise than it was meant."),
                     {QStringLiteral("FILE")});
    RehearsalRun::AddPlaceOptions(line);
    line.AddValue(TODAY, QStringLiteral("DATE"),
                  QStringLiteral("dates before it count as past, as 2024-05-15\n(default: today)"));
    line.AddValue(MEDIA, QStringLiteral("DIR"),
                  QStringLiteral("folder of the sounds: each message and track is\nlooked for there, and read"));
    line.AddFlag(STRICT, QStringLiteral("warnings give the exit status 1"));
    line.AddFlag(PEERS, QStringLiteral("warns of lines whose peer is not on the session bus"));
    line.AddFlag(JSON, QStringLiteral("for machines: one object with all findings"));
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    RehearsalRun::SetTimeZone(line);
    std::optional<MediaFolder> media;
    if (line.Has(MEDIA))
        media.emplace(line.Value(MEDIA));
    // The clocks of this machine need not be those of the device.
    const Rules::Options options{Today(line), RehearsalRun::HasTimeZone(line), media ? &*media : nullptr,
                                 line.Has(PEERS) ? AbsentPeers() : QStringList()};
    const QString file = line.Operand(0);
    const Workspace workspace(file, line.Value(PLAYLISTS));
    std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, file);
    const Findings findings = Rules::FindAll(workspace, lines, options);
    const CheckText::Result result{file, static_cast<int>(lines.size()), findings};
    Terminal::Print(line.Has(JSON) ? CheckText::Json(result) : CheckText::Lines(result));
    if (findings.Errors() > 0)
        return ExitStatus::ERRORS;
    return line.Has(STRICT) && findings.Warnings() > 0 ? ExitStatus::WARNINGS : ExitStatus::CLEAN;
}
