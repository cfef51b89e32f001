#pragma once

#include "engine/Rehearsal.h"

#include <QByteArray>

#include <cstdint>

// A rehearsal with what can disturb a daemon, at random: half of it happens near the events of an undisturbed run. The
// clock is stepped, by seconds or by up to two hours, the schedule is loaded anew, and a peer does not answer.
[[nodiscard]] Rehearsal::Plan RandomPlan(std::uint32_t seed, const Rehearsal::Plan& undisturbed,
                                         const std::vector<Event>& events);

// What disturbs it, for people.
[[nodiscard]] QByteArray PlanText(const Rehearsal::Plan& plan);
