#include "Console.h"
#include "ControlObject.h"
#include "DeviceBehaviour.h"
#include "Options.h"
#include "Simulator.h"
#include "Transcript.h"
#include "process/BusWatcher.h"
#include "process/EndSignals.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>

#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace
{

constexpr const char* BUS_VARIABLE = "DBUS_SESSION_BUS_ADDRESS";

QDBusConnection ConnectToBus()
{
    // Without an address the bus library would look for the user's own bus, or start one.
    if (qEnvironmentVariableIsEmpty(BUS_VARIABLE))
        throw std::runtime_error(std::string(BUS_VARIABLE) + " names no bus");
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        throw std::runtime_error("can't connect to the bus: " + bus.lastError().message().toStdString());
    return bus;
}

void OnBusLost()
{
    Console::Error(QStringLiteral("the bus is gone"));
    QCoreApplication::exit(EXIT_FAILURE);
}

int Run(const Options& options)
{
    if (!EndSignals::Catch([] { QCoreApplication::exit(EXIT_SUCCESS); }).empty())
        throw std::runtime_error("can't catch SIGINT and SIGTERM");
    std::optional<Expectations> expectations;
    if (!options.expectFile.isEmpty())
        expectations.emplace(options.expectFile);
    Transcript transcript(std::move(expectations), options.quiet);

    QDBusConnection bus = ConnectToBus();
    BusWatcher watcher(OnBusLost);
    if (!watcher.Watch(bus))
        throw std::runtime_error("cannot watch the bus");
    Simulator simulator(bus);
    transcript.Follow(simulator);
    std::optional<DeviceBehaviour> behaviour;
    if (options.play)
        behaviour.emplace(simulator);
    ControlObject control(simulator);
    simulator.Register(options.absentInterfaces);
    // Last, so that who waits for this name finds every peer there.
    control.Register(bus, options.controlService);
    const int status = QCoreApplication::exec();
    transcript.ShowReport();
    return status == EXIT_SUCCESS && !transcript.IsGood() ? EXIT_FAILURE : status;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ozna-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(OZNA_VERSION));
    try
    {
        return Run(Options::Parse(app));
    }
    catch (const std::exception& error)
    {
        Console::Error(QString::fromLocal8Bit(error.what()));
        return EXIT_FAILURE;
    }
}
