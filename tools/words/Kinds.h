#pragma once

#include "engine/Request.h"

#include "Task.h"

#include <QList>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// What a parameter of a task stands for. Which of them must be there is told by the daemon's table of kinds.
enum class ParameterRole : std::uint8_t
{
    FILE_NAME,
    PORT_AND_PATH,
    IDENTIFIER,
    PLAYER_VOLUME,
    MASTER_VOLUME,
    INTENSITY,
    FREQUENCY,
    MASK,
    SWITCH,
    CPU_FREQUENCY,
    PHOTO_INTERVAL,
    PHOTO_NUMBER,
    PDD_NUMBER,
};

// The parameters of a kind, in order; its tasks read no more than these.
struct ParameterRoles
{
    std::size_t count = 0;
    std::array<ParameterRole, 3> roles = {};

    template <typename... Roles>
    constexpr explicit ParameterRoles(Roles... all)
        : count(sizeof...(all))
        , roles{all...}
    {
    }
};

// What the tool says and shows of one kind of task. requests: what a task of the kind has asked for.
struct Kind
{
    TaskType type;
    const char* label; // for people who do not write schedules
    const char* style; // the class of the page's style
    bool hasIcon;      // which stands for the label where there is little room
    ParameterRoles parameters;

    // "play the message gong.mp3 at volume 70".
    QString (*phrase)(const Task& task, const QList<Request>& requests);

    // What is played or set: "gong.mp3", "christmas from track 3", "98.5 MHz". Empty where there is no more to say.
    QString (*subject)(const QList<Request>& requests);

    [[nodiscard]] std::span<const ParameterRole> Roles() const
    {
        return std::span(parameters.roles).first(parameters.count);
    }
};

namespace Kinds
{

// The row of that type; one without a name or parameters for what is no kind.
[[nodiscard]] const Kind& Of(TaskType type);

} // namespace Kinds
