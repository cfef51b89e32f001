#include "PeerWaits.h"

#include <algorithm>
#include <deque>

namespace
{

constexpr std::int64_t LEAST_MS = 1000; // less than that keeps nothing from its start, which may come 2 s late
constexpr std::int64_t LEAST_KEPT_MS = 20;
constexpr std::int64_t AT_ONCE_MS = 20;
constexpr size_t MOST = 64;

struct Wait
{
    QString service;
    std::int64_t begin_ms;
    std::int64_t end_ms;
};

std::deque<Wait>& Waits()
{
    static std::deque<Wait> waits;
    return waits;
}

} // namespace

void PeerWaits::Note(const QString& service, std::int64_t begin_ms, std::int64_t end_ms)
{
    const bool goesOn =
        !Waits().empty() && Waits().back().service == service && begin_ms - Waits().back().end_ms <= AT_ONCE_MS;
    if (goesOn)
        Waits().back().end_ms = end_ms;
    if (goesOn || end_ms - begin_ms < LEAST_KEPT_MS)
        return;
    Waits().push_back({service, begin_ms, end_ms});
    if (Waits().size() > MOST)
        Waits().pop_front();
}

QString PeerWaits::Longest(std::int64_t from_ms, std::int64_t to_ms)
{
    QString service;
    std::int64_t longest_ms = LEAST_MS - 1;
    for (const Wait& wait : Waits())
    {
        const std::int64_t length_ms = std::min(wait.end_ms, to_ms) - std::max(wait.begin_ms, from_ms);
        if (length_ms <= longest_ms)
            continue;
        longest_ms = length_ms;
        service = wait.service;
    }
    return service;
}

QString PeerWaits::Throughout(std::int64_t from_ms, std::int64_t to_ms)
{
    const auto wait = std::ranges::find_if(
        Waits(), [=](const Wait& each) { return each.begin_ms <= from_ms && each.end_ms >= to_ms; });
    return wait != Waits().end() ? wait->service : QString();
}

void PeerWaits::Clear()
{
    Waits().clear();
}
