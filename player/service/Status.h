#pragma once

#include <array>

// What a request is answered with. Each stands in ozna-player(8).
enum class Status : int
{
    ACCEPTED,
    BAD_ARGUMENT,
    BAD_NAME,
    NOT_FOUND,
    NOT_SET_UP,
    CANNOT_PLAY,
    STOPPED,
    ENDING,
    CANNOT_SWITCH,
};

struct StatusWords
{
    Status status;
    const char* words;
};

inline constexpr std::array STATUS_TABLE{
    StatusWords{Status::ACCEPTED, "accepted"},
    StatusWords{Status::BAD_ARGUMENT, "an argument is out of its range or its form"},
    StatusWords{Status::BAD_NAME, "the name is empty or leads out of its folder"},
    StatusWords{Status::NOT_FOUND, "there is no such file, or it cannot be read; or no track of the playlist is there"},
    StatusWords{Status::NOT_SET_UP, "the settings name nothing for it"},
    StatusWords{Status::CANNOT_PLAY, "there is no sound in it, or no output"},
    StatusWords{Status::STOPPED, "it was stopped before it was ready"},
    StatusWords{Status::ENDING, "the player is about to end"},
    StatusWords{Status::CANNOT_SWITCH, "the system does not let it be switched"},
};

[[nodiscard]] constexpr bool IsStatusTableInOrder()
{
    for (std::size_t i = 0; i < STATUS_TABLE.size(); ++i)
    {
        if (static_cast<std::size_t>(STATUS_TABLE[i].status) != i)
            return false;
    }
    return true;
}
static_assert(IsStatusTableInOrder(), "a row a status, in the order of their numbers");

[[nodiscard]] constexpr const char* WordsOf(Status status)
{
    return STATUS_TABLE[static_cast<std::size_t>(status)].words;
}
