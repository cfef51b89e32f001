#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "engine/Workspace.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <csignal>

namespace
{

struct Command
{
    const char* name;
    const char* summary;
    int (*run)(const QStringList& arguments);
};

constexpr std::array COMMANDS{
    Command{"check", "lines that the daemon drops, or reads otherwise than meant", Commands::Check},
    Command{"diff", "which starts come, go or move from one file to another", Commands::Diff},
    Command{"dst", "what becomes of starts where the clocks change", Commands::Dst},
    Command{"explain", "a schedule line in words", Commands::Explain},
    Command{"next", "what starts next, and in how long", Commands::Next},
    Command{"rehearse", "exactly what the daemon would ask for, and when", Commands::Rehearse},
    Command{"status", "what the daemon runs, what comes next, what went wrong", Commands::Status},
    Command{"enable", "switches the daemon on", Commands::Enable},
    Command{"disable", "switches the daemon off", Commands::Disable},
    Command{"use", "points the daemon at another schedule file", Commands::Use},
    Command{"reload", "has the daemon read its schedule anew", Commands::Reload},
    Command{"deploy", "puts a checked schedule in place, and has it loaded", Commands::Deploy},
    Command{"watch", "follows the daemon live", Commands::Watch},
};

QString Usage()
{
    QString text = QStringLiteral("Usage: ozna-schedule COMMAND ...\n\n"
                                  "Shows what a schedule will do, by the scheduling daemon's own engine, and steers\n"
                                  "the daemon.\n\n");
    for (const Command& command : COMMANDS)
        text += QStringLiteral("  %1%2\n")
                    .arg(QString::fromLatin1(command.name).leftJustified(11), QLatin1String(command.summary));
    return text + QStringLiteral("\nozna-schedule COMMAND --help shows a command's options. ozna-schedule --version\n"
                                 "shows the version. Manual pages: ozna-schedule(1), ozna-schedule(5).\n");
}

int Run(const QStringList& arguments)
{
    const QString name = arguments.value(0);
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help"))
    {
        Terminal::Print(Usage());
        return ExitStatus::CLEAN;
    }
    if (name == QLatin1String("--version"))
    {
        Terminal::Print(QStringLiteral("ozna-schedule " OZNA_VERSION "\n"));
        return ExitStatus::CLEAN;
    }
    const auto* const command =
        std::ranges::find_if(COMMANDS, [&](const Command& row) { return name == QLatin1String(row.name); });
    if (command == COMMANDS.end())
        throw ToolError(
            (name.isEmpty() ? QStringLiteral("a command is missing") : QStringLiteral("no command \"%1\"").arg(name)) +
            QStringLiteral("\nsee ozna-schedule --help"));
    return command->run(arguments.mid(1));
}

} // namespace

int main(int argc, char* argv[])
{
    Workspace::PrepareProcess();
    // A reader that has seen enough, as head, ends the output and not the tool, which has a folder to take away.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    const QCoreApplication application(argc, argv);
    try
    {
        return Run(QCoreApplication::arguments().mid(1));
    }
    catch (const std::exception& error)
    {
        Terminal::PrintError(QStringLiteral("ozna-schedule: %1\n").arg(QString::fromStdString(error.what())));
        return ExitStatus::FAILED;
    }
}
