#pragma once

#include "BusMessages.h"
#include "Request.h"

#include <array>

// What goes wrong with a request.
enum class FaultKind
{
    ABSENT,
    BUS_ERROR,
    REFUSED,
    WRONG_TYPE,
    NO_VALUES,
    EXTRA_VALUES,
    EMPTY_STRUCTURE,
    EXIT,
    TAKEN_OVER,
    DIES,
    RESTARTS,
    ENDS,
    FLOOD,
    WRONG_SIGNALS,
    STRANGER,
    LATE,
};

// Where the peer's name is afterwards, for the request that the same task sends next.
enum class PeerAfter
{
    HERE,
    GONE,
    ELSEWHERE, // another process has it
};

struct Fault
{
    FaultKind kind;
    const char* id;
    const char* meaning; // for the document
    Outcome outcome;     // how the daemon has to take the request
    const char* error;   // the bus's message; %1 stands for the peer
    PeerAfter after;
    char done; // whether the peer does what it was asked for: '+', '-', '?'
    bool isSignal;
};

inline constexpr int SHOWN_LEVEL = 4; // up to which records are compared
inline constexpr int REFUSAL = 7;     // any status other than 0
// Less than the name says under a sanitizer, which takes its time.
inline constexpr int FLOOD_SIZE = OZNA_FLOOD_SIZE;

// In the order in which they happen. A late answer is the last: the plain day after it shows that it is not taken for
// that day's.
inline constexpr std::array FAULTS{
    Fault{FaultKind::ABSENT, "absent", "nobody has the peer's name", Outcome::BUS_ERROR, NO_OWNER, PeerAfter::GONE, '-',
          false},
    Fault{FaultKind::BUS_ERROR, "error", "it answers with a bus error, \"out of order\"", Outcome::BUS_ERROR,
          "out of order", PeerAfter::HERE, '-', false},
    Fault{FaultKind::REFUSED, "status", "it answers with status 7", Outcome::REFUSED, "", PeerAfter::HERE, '-', false},
    Fault{FaultKind::WRONG_TYPE, "type", "it answers with a text that is no number", Outcome::ACCEPTED, "",
          PeerAfter::HERE, '?', false},
    Fault{FaultKind::NO_VALUES, "empty", "it answers without a value", Outcome::ACCEPTED, "", PeerAfter::HERE, '?',
          false},
    Fault{FaultKind::EXTRA_VALUES, "extra", "it answers with status 0 and two values more", Outcome::ACCEPTED, "",
          PeerAfter::HERE, '+', false},
    Fault{FaultKind::EMPTY_STRUCTURE, "broken",
          "it answers with an empty structure, which is no valid message: the bus drops its connection",
          Outcome::BUS_ERROR, GONE_IN_THE_CALL, PeerAfter::GONE, '?', false},
    Fault{FaultKind::EXIT, "exit", "its process ends in the middle of the call", Outcome::BUS_ERROR, GONE_IN_THE_CALL,
          PeerAfter::GONE, '-', false},
    Fault{FaultKind::TAKEN_OVER, "taken over",
          "another process takes its name over in the middle of the call, then the first one answers with status 0; "
          "the daemon ignores what the first one signals after that",
          Outcome::ACCEPTED, "", PeerAfter::ELSEWHERE, '+', false},
    Fault{FaultKind::DIES, "dies", "its process ends after its answer, status 0, and leaves the name to nobody",
          Outcome::ACCEPTED, "", PeerAfter::HERE, '?', false},
    Fault{FaultKind::RESTARTS, "restarts",
          "its process ends after its answer, status 0, and another one takes its place", Outcome::ACCEPTED, "",
          PeerAfter::HERE, '?', false},
    Fault{FaultKind::ENDS, "ends", "a signal of its end, or a photo, comes right behind its answer, status 0",
          Outcome::ACCEPTED, "", PeerAfter::HERE, '+', true},
    Fault{FaultKind::FLOOD, "flood", "10,000 of its signals come at once", Outcome::ACCEPTED, "", PeerAfter::HERE, '+',
          true},
    Fault{FaultKind::WRONG_SIGNALS, "odd signal", "its signals come with too few, too many or other values",
          Outcome::ACCEPTED, "", PeerAfter::HERE, '+', true},
    Fault{FaultKind::STRANGER, "stranger", "its signals come from a process that does not own its name",
          Outcome::ACCEPTED, "", PeerAfter::HERE, '+', true},
    Fault{FaultKind::LATE, "late", "its answer, status 7, comes after the time-out, in the middle of the next call",
          Outcome::BUS_ERROR, NO_REPLY, PeerAfter::HERE, '?', false},
};
