#include "EndSignals.h"

#include "SignalPipe.h"

#include <array>
#include <csignal>

namespace
{

struct Row
{
    int number;
    const char* name;
};
constexpr std::array SIGNALS{Row{SIGINT, "SIGINT"}, Row{SIGTERM, "SIGTERM"}};

bool Install(int sig, EndSignals::Handler handler)
{
    struct sigaction action
    {
    };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    return sigemptyset(&action.sa_mask) == 0 && sigaction(sig, &action, nullptr) == 0;
}

} // namespace

void EndSignals::Wake(int /*sig*/) noexcept
{
    SignalPipe::Wake();
}

std::vector<const char*> EndSignals::Catch(std::function<void()> onSignal, Handler handler)
{
    const bool canWake = SignalPipe::Open(std::move(onSignal));
    std::vector<const char*> uncaught;
    for (const Row& row : SIGNALS)
    {
        if (!canWake || !Install(row.number, handler))
            uncaught.push_back(row.name);
    }
    return uncaught;
}
