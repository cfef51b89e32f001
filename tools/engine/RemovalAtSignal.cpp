#include "RemovalAtSignal.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <csignal>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{

constexpr std::array SIGNALS{SIGHUP, SIGINT, SIGTERM};

// Those that live. Changed only while the signals are held up.
std::vector<const RemovalAtSignal*>& All()
{
    static std::vector<const RemovalAtSignal*> all;
    return all;
}

// Holds the signals up for as long as it lives.
class SignalPause final
{
public:
    SignalPause()
    {
        sigset_t signals{};
        sigemptyset(&signals);
        for (const int sig : SIGNALS)
            sigaddset(&signals, sig);
        static_cast<void>(::sigprocmask(SIG_BLOCK, &signals, &m_before));
    }
    ~SignalPause() { static_cast<void>(::sigprocmask(SIG_SETMASK, &m_before, nullptr)); }

    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;

private:
    sigset_t m_before{};
};

// Runs in a signal context.
void Remove(int sig)
{
    for (const RemovalAtSignal* removal : All())
    {
        for (const std::string& path : removal->Paths())
        {
            if (::unlink(path.c_str()) != 0)
                static_cast<void>(::rmdir(path.c_str()));
        }
    }
    static_cast<void>(std::signal(sig, SIG_DFL));
    static_cast<void>(std::raise(sig));
}

// A signal that is ignored stays so.
void Handle(void (*handler)(int))
{
    for (const int sig : SIGNALS)
    {
        if (std::signal(sig, handler) == SIG_IGN)
            static_cast<void>(std::signal(sig, SIG_IGN));
    }
}

} // namespace

RemovalAtSignal::RemovalAtSignal(const QStringList& paths)
{
    std::ranges::transform(paths, std::back_inserter(m_paths),
                           [](const QString& path) { return QFile::encodeName(path).toStdString(); });
    const SignalPause pause;
    All().push_back(this);
    if (All().size() == 1)
        Handle(Remove);
}

RemovalAtSignal::~RemovalAtSignal()
{
    const SignalPause pause;
    std::erase(All(), this);
    if (All().empty())
        Handle(SIG_DFL);
}
