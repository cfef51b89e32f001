#include "RandomPlan.h"

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

Rehearsal::Plan RandomPlan(std::uint32_t seed, const Rehearsal::Plan& undisturbed, const std::vector<Event>& events)
{
    Rehearsal::Plan plan = undisturbed;
    std::mt19937 random(seed);
    const auto below = [&](qint64 bound) { return static_cast<qint64>(random()) % bound; };
    for (qint64 count = below(12); count > 0; --count)
    {
        // Half of them are loads, a quarter steps by seconds and a quarter by up to two hours.
        const qint64 longest_ms = below(2) == 0 ? 30'000 : 7'200'000;
        const qint64 step_ms = below(2) == 0 ? 0 : below(2 * longest_ms) - longest_ms;
        qint64 after_ms = below(plan.until_ms - plan.start_ms);
        if (!events.empty() && below(2) == 0)
            after_ms = events[static_cast<size_t>(below(std::ssize(events)))].due_ms - plan.start_ms - below(10'000);
        plan.disturbances.push_back({std::max<qint64>(after_ms, 0), step_ms});
    }
    std::ranges::sort(plan.disturbances, {}, &Rehearsal::Disturbance::after_ms);
    static const QStringList PEERS{u"soundmanager"_s, u"lightmanager"_s, u"photomanager"_s, u"networkmanager"_s};
    if (below(2) == 0)
        plan.silentPeers.append(PEERS[below(PEERS.size())]);
    return plan;
}

QByteArray PlanText(const Rehearsal::Plan& plan)
{
    QString text = u"from %1, silent: %2"_s.arg(plan.start_ms).arg(plan.silentPeers.join(u' '));
    for (const Rehearsal::Disturbance& disturbance : plan.disturbances)
        text += u"\nafter %1: %2"_s.arg(disturbance.after_ms).arg(disturbance.step_ms);
    return text.toUtf8();
}
