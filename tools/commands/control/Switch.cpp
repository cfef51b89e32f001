#include "ControlOptions.h"
#include "HeldLines.h"
#include "base/ExitStatus.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "engine/Workspace.h"
#include "text/StringUtils.h"

#include <QDir>
#include <QFileInfo>

#include <functional>
#include <optional>

namespace
{

// Runs a command that changes the daemon's state with one call, and shows the state that it has then.
int Run(CommandLine& line, const QStringList& arguments, const std::function<void(SchedulerLink&)>& change)
{
    ControlOptions::AddJson(line);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;
    SchedulerLink link;
    change(link);
    Terminal::Print(ControlOptions::StateText(line, link.GetState()));
    return ExitStatus::CLEAN;
}

// The daemon takes any name, and runs nothing where there is no such file.
void CheckName(const CommandLine& line)
{
    const QString name = line.Operand(0);
    const QFileInfo file(ControlOptions::SchedulePath(line, name));
    if (name.contains(u'/'))
        throw ToolError(QStringLiteral("%1: is a path; the daemon takes the name of a file in %2")
                            .arg(StringUtils::Harmless(name), ControlOptions::SchedulePath(line, {})));
    if (!file.isFile())
        throw ToolError(QStringLiteral("%1: there is no such file").arg(StringUtils::Harmless(file.filePath())));
}

// None where the file cannot be read, which is told: the daemon runs nothing then.
std::optional<HeldLines> HeldBy(const QString& path)
{
    try
    {
        const Workspace workspace(path, {});
        return HeldLines::Of(ScheduleLine::ReadFile(workspace, path));
    }
    catch (const ToolError& error)
    {
        Terminal::PrintError(QStringLiteral("ozna-schedule: %1\n").arg(QString::fromStdString(error.what())));
        return std::nullopt;
    }
}

} // namespace

int Commands::Enable(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("enable"),
                     QStringLiteral("Switches the daemon on: it loads its schedule. Shows the state then."), {});
    return Run(line, arguments, [](SchedulerLink& link) { link.SetEnabled(true); });
}

int Commands::Disable(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("disable"),
                     QStringLiteral("Switches the daemon off: it stops what plays, and starts nothing until it is\n"
                                    "enabled or started anew. Shows the state then."),
                     {});
    return Run(line, arguments, [](SchedulerLink& link) { link.SetEnabled(false); });
}

int Commands::Reload(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("reload"),
                     QStringLiteral("Has the daemon read its schedule file anew: what plays is stopped. Does nothing\n"
                                    "while it is disabled. Shows the state then."),
                     {});
    return Run(line, arguments, [](SchedulerLink& link) {
        link.Reload();
        if (!link.GetState().isEnabled)
            Terminal::PrintError(QStringLiteral("ozna-schedule: nothing was loaded: the daemon is disabled\n"));
    });
}

int Commands::Use(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("use"),
                     QStringLiteral("Points the daemon at another file of its schedule folder, until it is started\n"
                                    "anew: it then runs schedule.csv. Shows the state then, and how many lines of\n"
                                    "the file the daemon takes."),
                     {QStringLiteral("FILE")});
    ControlOptions::AddJson(line);
    ControlOptions::AddData(line);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;
    SchedulerLink link;
    CheckName(line);
    link.SetScheduleFile(line.Operand(0));
    const QString path = ControlOptions::SchedulePath(line, line.Operand(0));
    const std::optional<HeldLines> held = HeldBy(path);
    const QJsonObject lines =
        held ? QJsonObject{{QStringLiteral("taken"), held->taken}, {QStringLiteral("rejected"), held->rejected}}
             : QJsonObject();
    Terminal::Print(ControlOptions::StateText(line, link.GetState(), lines));
    if (held && !ControlOptions::WantsJson(line))
        Terminal::Print(held->Words(path) + u'\n');
    return ExitStatus::CLEAN;
}
