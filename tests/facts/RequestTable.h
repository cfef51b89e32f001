#pragma once

#include <array>
#include <span>

// What makes the daemon send a request.
enum class Trigger
{
    START,    // the task's start
    PHOTO,    // the last photo of the series that the task's start has begun
    DELETION, // the end of the task while what it started plays
};

// What the task waits for once its start has been accepted.
enum class Wait
{
    NOTHING,
    PLAYBACK, // the signal that the playback has ended
    PHOTO,    // a photo; it does so even where the start was not accepted
    SERIES,   // the photos of a series; one of any, where the start was not accepted
};

// When the same task goes on with its second request.
enum class Follow
{
    NEVER,
    ACCEPTED, // after the first one was accepted
    ALWAYS,
};

// What of the answer the daemon looks at.
enum class Judged
{
    WHOLE,
    STATUS, // alone: a call that failed on the bus counts as accepted
    NEVER,
};

// The parameters of a task with which a request is tried, and what they put in the place of {1} to {4} in its texts.
struct Example
{
    const char* parameters; // null: the line has none
    std::array<const char*, 4> values{};
};

// A request that the daemon sends, and what it logs of each outcome. A record is written as the log client of the bus
// tests shows it, without the line number: "4 [tasks/Light.cpp] TASK REQUESTED | Light: 1". At its end stands the line
// end that the daemon hands over with it, if there is one. In records {error} is the bus's message and {status} the
// status; a null record is none.
struct RequestRow
{
    const char* group;                 // of the fault matrix: the requests of a group are tried side by side
    const char* id;                    // in documents
    int kind;                          // the task's number
    std::span<const Example> examples; // the first one is that of the fault matrix
    Trigger trigger = Trigger::START;
    const char* call; // peer, method, D-Bus types and values of the arguments, as the simulated device shows them
    int timeout_ms;   // how long the daemon waits
    Judged judged = Judged::WHOLE;
    bool isDecisive = true;        // whether the task's start fails with it
    const char* before = nullptr;  // the record ahead of the request
    const char* failed = nullptr;  // on the bus
    const char* refused = nullptr; // with a status other than 0
    const char* accepted = nullptr;
    const char* first = nullptr;  // the id of the request that the same task sends first
    const char* second = nullptr; // of the one that it sends then
    Follow follow = Follow::NEVER;
    Wait wait = Wait::NOTHING;
    const char* ended = nullptr;         // the record of the end that it waits for
    const char* endedWithPeer = nullptr; // of what is under way when its peer leaves the bus
    const char* lost;                    // for the document: what it means when it is not done
};

// How long the daemon waits for the sound manager, unless a request of the table says otherwise.
inline constexpr int SOUND_TIMEOUT_MS = 3000;

// How long the bus library waits where the daemon sets no time-out.
inline constexpr int LIBRARY_TIMEOUT_MS = 25000;

// Those to the sound manager, and those to the others.
std::span<const RequestRow> SoundRequests();
std::span<const RequestRow> DeviceRequests();
