#include "RemovalAtSignal.h"

#include <QFile>

#include <array>
#include <csignal>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{

constexpr std::array SIGNALS{SIGHUP, SIGINT, SIGTERM};

// Never changed while the handler is in place.
std::vector<std::string>& Paths()
{
    static std::vector<std::string> paths;
    return paths;
}

// Runs in a signal context.
void Remove(int sig)
{
    for (const std::string& path : Paths())
    {
        if (::unlink(path.c_str()) != 0)
            static_cast<void>(::rmdir(path.c_str()));
    }
    static_cast<void>(std::signal(sig, SIG_DFL));
    static_cast<void>(std::raise(sig));
}

} // namespace

RemovalAtSignal::RemovalAtSignal(const QStringList& paths)
{
    for (const QString& path : paths)
        Paths().push_back(QFile::encodeName(path).toStdString());
    for (const int sig : SIGNALS)
    {
        if (std::signal(sig, Remove) == SIG_IGN)
            static_cast<void>(std::signal(sig, SIG_IGN));
    }
}

RemovalAtSignal::~RemovalAtSignal()
{
    for (const int sig : SIGNALS)
    {
        if (std::signal(sig, SIG_DFL) == SIG_IGN)
            static_cast<void>(std::signal(sig, SIG_IGN));
    }
    Paths().clear();
}
