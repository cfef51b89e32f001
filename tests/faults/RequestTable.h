#pragma once

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

// A request that the daemon sends, and what it has to log. Records are in the form of DaemonProcess::Log, of the levels
// 1, 2 and 4; several of them are separated by newlines, and an empty text is none. In onError %1 is the bus's message.
struct Request
{
    const char* group; // the requests of a group are tried side by side
    const char* id;
    const char* schedule; // the task, with its parameters
    const char* type;     // the task's, in the scheduler's records
    Trigger trigger;
    const char* peer;
    const char* method;
    int timeout_ms;
    const char* callsBefore; // what the task sends first, separated by newlines
    const char* call;
    const char* before; // records before the request is answered
    const char* onError;
    const char* onRefused;
    const char* onAccepted;
    Follow follow;
    const char* followCall;
    const char* onFollow;     // records of the second request, accepted
    const char* onFollowGone; // records of the second request when the peer is not there; %1 as above
    Wait wait;
    const char* ended;              // the record of the end that it waits for
    const char* lost;               // for the document: what it means when it is not done
    const char* endedWithPeer = ""; // the record of what is under way when its peer leaves the bus; empty: nothing is
};

std::span<const Request> AllRequests();
