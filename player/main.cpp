#include "Globals.h"
#include "ear/EarCommands.h"
#include "process/BusReading.h"
#include "process/BusWatcher.h"
#include "process/EndSignals.h"
#include "process/Lifesign.h"
#include "process/StandardDescriptors.h"
#include "service/Exports.h"
#include "service/LightObject.h"
#include "service/PlayerLog.h"
#include "service/PlayerOptions.h"
#include "service/SoundObject.h"
#include "sound/GstSoundMaker.h"
#include "text/StringUtils.h"

#include <LogInterface.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace
{

constexpr const char* LOG_CLIENT_PATH = "/com/kestrelix/ozna/soundmanager/logobj";
constexpr const char* LOG_LEVEL_VARIABLE = "OZNA_LOG_LEVEL";
constexpr int LIFESIGN_EVERY_MS = 5000;

void CatchSignals()
{
    if (!EndSignals::Catch([] { QCoreApplication::exit(EXIT_SUCCESS); }).empty())
        PLAYER_LOG(LEVEL_WARNING, "Can't catch SIGINT and SIGTERM");
}

// A player that nobody can reach any more ends, so that its supervisor starts it again.
void OnBusLost()
{
    PLAYER_LOG(LEVEL_ERROR, "DBUS: Session bus connection lost");
    QCoreApplication::exit(EXIT_FAILURE);
}

// One whose output holds on to it ends as well: another process may play.
void OnStuck(const QString& reason)
{
    PLAYER_LOG(LEVEL_ERROR, "OUTPUT HANGS | %s: the player ends, to be started anew", qUtf8Printable(reason));
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

// Until a signal ends the process, or the bus is gone.
int Serve(QDBusConnection& bus, SoundMaker& maker, const PlayerSettings& settings)
{
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

int ServeBus(SoundMaker& maker, const PlayerSettings& settings)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    BusWatcher watcher(OnBusLost);
    if (!watcher.Watch(bus))
    {
        PLAYER_LOG(LEVEL_ERROR, "DBUS: Can't connect session bus");
        return EXIT_FAILURE;
    }
    if (!BusReading::NeverPause(bus))
        PLAYER_LOG(LEVEL_WARNING, "DBUS: Can't lift the limit on waiting messages");
    QObject::connect(&maker, &SoundMaker::Stuck, &watcher, OnStuck);
    return Serve(bus, maker, settings);
}

// What a person asks for on a terminal, and reads there.
int RunOnTerminal(PlayerOptions::Command command, const PlayerSettings& settings)
{
    for (const QString& complaint : settings.complaints)
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(QCoreApplication::applicationName()),
                     qUtf8Printable(StringUtils::Harmless(complaint)));
    // It has no event loop that a signal could end.
    if (command == PlayerOptions::Command::LIST_OUTPUTS)
        return EarCommands::ListOutputs(settings.sound, PlayerSettings::File());
    CatchSignals();
    GstSoundMaker maker(settings.sound);
    return command == PlayerOptions::Command::TEST ? EarCommands::Test(maker, settings.sound)
                                                   : EarCommands::Measure(maker, settings.sound);
}

int Run(PlayerOptions::Command command)
{
    const bool isService = command == PlayerOptions::Command::SERVE;
    // Records would stand among the lines of a command, unless somebody wants them.
    if (isService || ::qEnvironmentVariableIsSet(LOG_LEVEL_VARIABLE))
        _logInterface = new LogInterface(QString::fromLatin1(LOG_CLIENT_PATH));
    if (isService)
        CatchSignals();
    const PlayerSettings settings = PlayerSettings::Read();
    if (!isService)
        return RunOnTerminal(command, settings);
    GstSoundMaker maker(settings.sound);
    return ServeBus(maker, settings);
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
    const PlayerOptions::Command command = PlayerOptions::Read(app);
    m_app = &app;
    return Run(command);
}
