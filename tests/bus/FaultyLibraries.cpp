// Library functions that fail when the environment says so; the linker puts them in the place of the real ones.

#include <QDBusConnection>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string_view>
#include <sys/eventfd.h>

class Scheduler;
class TextFile;

namespace
{

bool IsFault(std::string_view name)
{
    const char* fault = std::getenv("OZNA_FAULT");
    return fault != nullptr && fault == name;
}

// So many lines of files are read before the process halts.
constexpr int LINES_UNTIL_HALT = 5000;

int Fail()
{
    errno = EINVAL;
    return -1;
}

} // namespace

// The linker makes these names.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" {
bool __real__ZN8TextFile8ReadLineER7QString(TextFile* file, QString& line);
bool __wrap__ZN8TextFile8ReadLineER7QString(TextFile* file, QString& line);
void __real__ZN9Scheduler3RunEv(Scheduler* scheduler);
void __wrap__ZN9Scheduler3RunEv(Scheduler* scheduler);
int __real_sigaction(int sig, const struct sigaction* action, struct sigaction* earlier);
int __wrap_sigaction(int sig, const struct sigaction* action, struct sigaction* earlier);
int __real_eventfd(unsigned int count, int flags);
int __wrap_eventfd(unsigned int count, int flags);
bool __real__ZN15QDBusConnection14registerObjectERK7QStringP7QObject6QFlagsINS_14RegisterOptionEE(
    QDBusConnection* bus, const QString& path, QObject* object, QDBusConnection::RegisterOptions options);
bool __wrap__ZN15QDBusConnection14registerObjectERK7QStringP7QObject6QFlagsINS_14RegisterOptionEE(
    QDBusConnection* bus, const QString& path, QObject* object, QDBusConnection::RegisterOptions options);
bool __real__ZN10BusReading10NeverPauseERK15QDBusConnection(const QDBusConnection& bus);
bool __wrap__ZN10BusReading10NeverPauseERK15QDBusConnection(const QDBusConnection& bus);
void __real__ZN5Peers13CreateProxiesERKSt8functionIFvvEE(const std::function<void()>& onUpdateManager);
void __wrap__ZN5Peers13CreateProxiesERKSt8functionIFvvEE(const std::function<void()>& onUpdateManager);
}

// Halts in the middle of a file, until the test has the process go on.
bool __wrap__ZN8TextFile8ReadLineER7QString(TextFile* file, QString& line)
{
    static int lines = 0;
    if (IsFault("halt") && ++lines == LINES_UNTIL_HALT)
        std::raise(SIGSTOP);
    return __real__ZN8TextFile8ReadLineER7QString(file, line);
}

int __wrap_sigaction(int sig, const struct sigaction* action, struct sigaction* earlier)
{
    if ((sig == SIGINT && IsFault("SIGINT")) || (sig == SIGTERM && IsFault("SIGTERM")))
        return Fail();
    return __real_sigaction(sig, action, earlier);
}

int __wrap_eventfd(unsigned int count, int flags)
{
    return IsFault("eventfd") ? Fail() : __real_eventfd(count, flags);
}

bool __wrap__ZN15QDBusConnection14registerObjectERK7QStringP7QObject6QFlagsINS_14RegisterOptionEE(
    QDBusConnection* bus, const QString& path, QObject* object, QDBusConnection::RegisterOptions options)
{
    return !IsFault("object") &&
           __real__ZN15QDBusConnection14registerObjectERK7QStringP7QObject6QFlagsINS_14RegisterOptionEE(
               bus, path, object, options);
}

bool __wrap__ZN10BusReading10NeverPauseERK15QDBusConnection(const QDBusConnection& bus)
{
    return !IsFault("reading") && __real__ZN10BusReading10NeverPauseERK15QDBusConnection(bus);
}

void __wrap__ZN5Peers13CreateProxiesERKSt8functionIFvvEE(const std::function<void()>& onUpdateManager)
{
    if (IsFault("scheduler"))
        throw std::bad_alloc();
    __real__ZN5Peers13CreateProxiesERKSt8functionIFvvEE(onUpdateManager);
}

void __wrap__ZN9Scheduler3RunEv(Scheduler* scheduler)
{
    if (IsFault("run"))
        throw std::bad_alloc();
    __real__ZN9Scheduler3RunEv(scheduler);
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)
