#include "Globals.h"
#include "ear/EarCommands.h"
#include "process/BusReading.h"
#include "process/BusWatcher.h"
#include "process/Lifesign.h"
#include "process/SignalPipe.h"
#include "process/StandardDescriptors.h"
#include "service/Exports.h"
#include "service/LightObject.h"
#include "service/PlayerLog.h"
#include "service/SoundObject.h"
#include "sound/GstSoundMaker.h"

#include <LogInterface.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QTimer>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <optional>

// The process-wide objects that the daemon's library expects.
QCoreApplication* m_app = nullptr;
LogInterface* _logInterface = nullptr; // NOLINT(readability-identifier-naming)
Scheduler* m_scheduler = nullptr;
SchedulerAdaptor* m_schedulerAdaptor = nullptr;

namespace
{

constexpr const char* LOG_CLIENT_PATH = "/com/kestrelix/ozna/soundmanager/logobj";
constexpr int LIFESIGN_EVERY_MS = 10'000;

// Runs in a signal context.
void OnSignal(int /*sig*/)
{
    SignalPipe::Wake();
}

bool InstallHandlers()
{
    struct sigaction action
    {
    };
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    return SignalPipe::Open([] { QCoreApplication::exit(EXIT_SUCCESS); }) && sigemptyset(&action.sa_mask) == 0 &&
           sigaction(SIGINT, &action, nullptr) == 0 && sigaction(SIGTERM, &action, nullptr) == 0;
}

// What a person on a terminal asks for, who needs no bus.
int Test()
{
    const SoundSettings settings = PlayerSettings::Read().sound;
    GstSoundMaker maker(settings);
    return EarCommands::Test(maker, settings);
}

int Measure()
{
    const SoundSettings settings = PlayerSettings::Read().sound;
    GstSoundMaker maker(settings);
    return EarCommands::Measure(maker, settings);
}

struct Command
{
    const char* option;
    const char* description;
    int (*run)();
};
constexpr std::array COMMANDS{
    Command{"test", "Play a gong at the next full five seconds, and tell when it was heard, or why not.", Test},
    Command{"measure", "Play ten gongs, listen to the sound server's output, and tell the error of each.", Measure},
    Command{"list-outputs", "List the outputs of this machine, as the settings name them.", EarCommands::ListOutputs},
};

// Ends the process where that is what is asked for, or is wrong. What is to be done in place of the service, if
// anything.
const Command* ReadOptions(const QCoreApplication& app)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Plays what ozna-scheduler asks for: messages, playlists, streams and radio."));
    parser.addHelpOption();
    parser.addVersionOption();
    for (const Command& command : COMMANDS)
        parser.addOption({QString::fromLatin1(command.option), QString::fromLatin1(command.description)});
    parser.process(app);
    if (parser.positionalArguments().isEmpty())
    {
        const auto* const asked = std::ranges::find_if(
            COMMANDS, [&parser](const Command& command) { return parser.isSet(QString::fromLatin1(command.option)); });
        return asked == COMMANDS.end() ? nullptr : asked;
    }
    std::fprintf(stderr, "ozna-player: no argument expected: %s\n",
                 qPrintable(parser.positionalArguments().constFirst()));
    std::exit(EXIT_FAILURE);
}

// A player that nobody can reach any more ends, so that its supervisor starts it again.
void OnBusLost()
{
    PLAYER_LOG(LEVEL_ERROR, "DBUS: Session bus connection lost");
    QCoreApplication::exit(EXIT_FAILURE);
}

// The sign comes from the event loop: one that hangs gives none.
void GiveLifesigns(QTimer& timer)
{
    if (!Lifesign::Open())
        PLAYER_LOG(LEVEL_WARNING, "Can't reach the service manager's watchdog");
    if (!Lifesign::IsExpected())
        return;
    timer.callOnTimeout(Lifesign::Give);
    timer.start(LIFESIGN_EVERY_MS);
}

int Serve(QDBusConnection& bus)
{
    const PlayerSettings settings = PlayerSettings::Read();
    GstSoundMaker maker(settings.sound);
    SoundObject sound(maker, settings, Volumes::DefaultFile());
    if (!Exports::Register(bus, sound))
        return EXIT_FAILURE;
    // Another program may be the light manager: its name is left alone where no light is set up.
    std::optional<LightObject> lights;
    if (!settings.lights.isEmpty())
    {
        lights.emplace(settings.lights, QStringList{SystemOutput::LEDS, SystemOutput::BACKLIGHTS});
        if (!Exports::Register(bus, *lights))
            PLAYER_LOG(LEVEL_WARNING, "The lights are left alone");
    }
    QTimer lifesigns;
    GiveLifesigns(lifesigns);
    PLAYER_LOG(LEVEL_NORMAL, "Player ready");
    const int status = QCoreApplication::exec();
    sound.End();
    // What ended is to be known before the connection goes away; where the bus is gone, nobody waits for it.
    static_cast<void>(BusReading::CatchUp(bus));
    PLAYER_LOG(LEVEL_NORMAL, "Player ended");
    return status;
}

} // namespace

int main(int argc, char* argv[])
{
    // A record meant for a closed standard error must not go to the bus, whose socket would have its number.
    if (!StandardDescriptors::OpenClosed())
        return EXIT_FAILURE;
    // All that is waited for is timers, descriptors and the bus: Qt's own loop does that at a smaller cost than GLib's.
    static_cast<void>(::qputenv("QT_NO_GLIB", "1"));
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ozna-player"));
    QCoreApplication::setApplicationVersion(QStringLiteral(OZNA_VERSION));
    const Command* const command = ReadOptions(app);
    m_app = &app;
    _logInterface = new LogInterface(QString::fromLatin1(LOG_CLIENT_PATH));
    if (command)
        return command->run();
    if (!InstallHandlers())
        PLAYER_LOG(LEVEL_WARNING, "Can't catch SIGINT and SIGTERM");

    QDBusConnection bus = QDBusConnection::sessionBus();
    BusWatcher watcher(OnBusLost);
    if (!watcher.Watch(bus))
    {
        PLAYER_LOG(LEVEL_ERROR, "DBUS: Can't connect session bus");
        return EXIT_FAILURE;
    }
    if (!BusReading::NeverPause(bus))
        PLAYER_LOG(LEVEL_WARNING, "DBUS: Can't lift the limit on waiting messages");
    return Serve(bus);
}
