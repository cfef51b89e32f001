#pragma once

#include <array>

struct Zone
{
    const char* name;
    bool isFixed; // one distance from UTC for all time, so that differences are plain sums
};

namespace Zones
{

inline constexpr std::array ALL{
    Zone{"UTC", true},
    Zone{"<+0545>-5:45", true},
    Zone{"<-12>12", true},
    Zone{"<+24>-24:59:59", true},
    Zone{"Europe/Rome", false},
    Zone{"America/Los_Angeles", false},
    Zone{"Pacific/Auckland", false},
    Zone{"Asia/Kathmandu", false},
    Zone{"Australia/Lord_Howe", false},  // half an hour of summer time
    Zone{"Africa/Casablanca", false},    // summer time that goes back
    Zone{"America/Sao_Paulo", false},    // changed at midnight
    Zone{"AAA3BBB,J60/0,J300/0", false}, // and never stops doing so
    Zone{":/nonexistent", true},
};

// The time zone of the process stays until another is wanted: looking one up takes long.
void Set(const Zone& zone);

} // namespace Zones
