#include "Globals.h"
#include "Log.h"
#include "Scheduler.h"
#include "SchedulerAdaptor.h"
#include "SchedulerNames.h"
#include "process/BusReading.h"
#include "process/BusWatcher.h"
#include "process/EndSignals.h"
#include "process/Lifesign.h"
#include "process/SignalPipe.h"
#include "process/StandardDescriptors.h"
#include "process/StopRequest.h"

#include <LogInterface.h>

#include <QCoreApplication>
#include <QDBusConnection>

#include <csignal>
#include <cstdio>
#include <malloc.h>

QCoreApplication* m_app = nullptr;
LogInterface* _logInterface = nullptr; // NOLINT(readability-identifier-naming)
Scheduler* m_scheduler = nullptr;
SchedulerAdaptor* m_schedulerAdaptor = nullptr;

namespace
{

constexpr const char* LOG_CLIENT_PATH = "/com/kestrelix/ozna/scheduler/logobj";
constexpr int LARGE_BLOCK = 131072; // bytes
constexpr int EXIT_NORMAL = 0;
constexpr int EXIT_NO_BUS = -1;
constexpr int EXIT_NO_DESCRIPTOR = -1; // nobody could be told of anything

// Runs in a signal context: only notes the request and wakes the event loop, which then exits with 0.
void signals_handler(int sig)
{
    if (sig != SIGINT && sig != SIGTERM)
        return;
    StopRequest::Make();
    SignalPipe::Wake();
}

// Qt takes GLib's event loop where it finds one, which does more at each wake-up. All that is waited for here is
// timers, the bus and the signals: Qt's own loop does that as well. Failing, the daemon only wakes up at a greater
// cost.
void ChooseEventLoop()
{
    static_cast<void>(::qputenv("QT_NO_GLIB", "1"));
}

void InstallHandlers()
{
    for (const char* const name : EndSignals::Catch([] { QCoreApplication::exit(EXIT_NORMAL); }, signals_handler))
        OZNA_LOG(LEVEL_WARNING, "Can't catch %s", name);
}

bool Register(QDBusConnection& bus)
{
    if (!bus.registerService(QString::fromLatin1(SchedulerNames::SERVICE)))
    {
        OZNA_LOG(LEVEL_ERROR, "DBUS: Can't register service [%s]", SchedulerNames::SERVICE);
        return false;
    }
    if (!bus.registerObject(QString::fromLatin1(SchedulerNames::OBJECT_PATH), m_scheduler))
    {
        OZNA_LOG(LEVEL_ERROR, "DBUS: Can't register object [%s]", SchedulerNames::OBJECT_PATH);
        return false;
    }
    return true;
}

// A daemon that nobody can reach any more ends, so that its supervisor starts it again.
void OnBusLost()
{
    OZNA_LOG(LEVEL_ERROR, "DBUS: Session bus connection lost");
    StopRequest::Make();
    QCoreApplication::exit(EXIT_NO_BUS);
}

} // namespace

int main(int argc, char* argv[])
{
    // A record meant for a closed standard error must not go to the bus, whose socket would have its number.
    if (!StandardDescriptors::OpenClosed())
        return EXIT_NO_DESCRIPTOR;
    // A large block goes back to the device as soon as it is free. Unless it is told where large begins, the allocator
    // takes that from what it sees, and after one long call keeps megabytes for the next.
    static_cast<void>(::mallopt(M_MMAP_THRESHOLD, LARGE_BLOCK));
    ChooseEventLoop();
    m_app = new QCoreApplication(argc, argv);
    _logInterface = new LogInterface(QString::fromLatin1(LOG_CLIENT_PATH));
    OZNA_LOG(LEVEL_NORMAL, "Creating Scheduler...");
    InstallHandlers();
    if (!Lifesign::Open())
        OZNA_LOG(LEVEL_WARNING, "Can't reach the service manager's watchdog");

    QDBusConnection bus = QDBusConnection::sessionBus();
    BusWatcher watcher(OnBusLost);
    if (!watcher.Watch(bus))
    {
        OZNA_LOG(LEVEL_ERROR, "DBUS: Can't connect session bus");
        std::puts("DBUS: Can't connect session bus");
        return EXIT_NO_BUS;
    }

    if (!BusReading::NeverPause(bus))
        OZNA_LOG(LEVEL_WARNING, "DBUS: Can't lift the limit on waiting messages");

    int status = EXIT_NORMAL;
    try
    {
        m_scheduler = new Scheduler(QString::fromLatin1(SchedulerNames::START_FILE));
        m_schedulerAdaptor = new SchedulerAdaptor(m_scheduler);
        if (!Register(bus))
            return EXIT_NO_BUS;
        OZNA_LOG(LEVEL_NORMAL, "Scheduler ready");
        OZNA_LOG(LEVEL_NORMAL, "Starting scheduler...");
        m_scheduler->Run();
        status = QCoreApplication::exec();
        m_scheduler->SetEnabled(false);
    }
    catch (const std::exception&)
    {
        OZNA_LOG(LEVEL_ERROR, "Impossible to create scheduler");
    }

    delete m_scheduler;
    OZNA_LOG(LEVEL_NORMAL, "Succesfully terminated");
    return status;
}
