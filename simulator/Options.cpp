#include "Options.h"

#include "Console.h"
#include "PeerTable.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>

namespace
{

bool IsPeerInterface(const QString& interface)
{
    return std::ranges::any_of(
        PEER_TABLE, [&interface](const PeerAddress& peer) { return interface == QLatin1String(peer.interface); });
}

[[noreturn]] void Refuse(const QString& complaint)
{
    Console::Error(complaint);
    std::exit(EXIT_FAILURE);
}

} // namespace

Options Options::Parse(const QCoreApplication& app)
{
    const QCommandLineOption absent(
        QStringLiteral("absent"), QStringLiteral("Do not take the name of the peer with that interface (repeatable)."),
        QStringLiteral("INTERFACE"));
    const QCommandLineOption quiet(QStringLiteral("quiet"), QStringLiteral("Write nothing to standard output."));
    const QCommandLineOption play(
        QStringLiteral("play"),
        QStringLiteral("Play the device's part: what is asked for happens, and ends after a while, with its signals."));
    const QCommandLineOption expect(
        QStringLiteral("expect"),
        QStringLiteral("Compare the requests with those in FILE, one a line: hh:mm:ss, method and arguments, with tabs "
                       "in between. The exit status is 1 when one is missing, early, late or not in the file."),
        QStringLiteral("FILE"));
    const QCommandLineOption control(
        QStringLiteral("control"),
        QStringLiteral("The service name under which it is steered; a second simulator on a bus needs its own."),
        QStringLiteral("NAME"), QStringLiteral("com.kestrelix.ozna.simulator"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Takes the place of the device's managers on the bus named by DBUS_SESSION_BUS_ADDRESS."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({absent, quiet, play, expect, control});
    parser.process(app);

    if (!parser.positionalArguments().isEmpty())
        Refuse(QStringLiteral("no argument expected: ") + parser.positionalArguments().constFirst());
    Options options;
    options.quiet = parser.isSet(quiet);
    options.play = parser.isSet(play);
    options.expectFile = parser.value(expect);
    options.controlService = parser.value(control);
    options.absentInterfaces = parser.values(absent);
    for (const QString& interface : std::as_const(options.absentInterfaces))
    {
        if (!IsPeerInterface(interface))
            Refuse(QStringLiteral("no peer with interface ") + interface);
    }
    return options;
}
