#include "PlayerOptions.h"

#include "PlayerSettings.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace
{

struct Row
{
    PlayerOptions::Command command;
    const char* name;
    const char* help;
};

constexpr std::array COMMANDS{
    Row{PlayerOptions::Command::TEST, "test",
        "Play a gong at the next full five seconds, and tell where it was heard and when, or why not."},
    Row{PlayerOptions::Command::MEASURE, "measure",
        "Play ten gongs, listen to what comes out, and tell by how much each missed its moment."},
    Row{PlayerOptions::Command::LIST_OUTPUTS, "list-outputs",
        "List the outputs as the setting Output names them, and tell which one is set and whether it is there."},
};

[[noreturn]] void Refuse(const QString& complaint)
{
    std::fprintf(stderr, "%s: %s\n", qPrintable(QCoreApplication::applicationName()), qPrintable(complaint));
    std::exit(EXIT_FAILURE);
}

} // namespace

PlayerOptions::Command PlayerOptions::Read(const QCoreApplication& app)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Plays what ozna-scheduler asks for: messages, playlists, streams and radio.\n"
                       "Settings: the section [PLAYER] of %1. Manual page: ozna-player(8).")
            .arg(PlayerSettings::File()));
    parser.addHelpOption();
    parser.addVersionOption();
    for (const Row& row : COMMANDS)
        parser.addOption({QString::fromLatin1(row.name), QString::fromLatin1(row.help)});
    parser.process(app);

    if (!parser.positionalArguments().isEmpty())
        Refuse(QStringLiteral("no argument expected: ") + parser.positionalArguments().constFirst());
    Command command = Command::SERVE;
    for (const Row& row : COMMANDS)
    {
        if (!parser.isSet(QString::fromLatin1(row.name)))
            continue;
        if (command != Command::SERVE)
            Refuse(QStringLiteral("one option at a time"));
        command = row.command;
    }
    return command;
}
