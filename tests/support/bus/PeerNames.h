#pragma once

#include <array>

// The device's managers, and the last part of each one's path.
struct PeerName
{
    const char* name; // as in "com.kestrelix.ozna.soundinterface"
    const char* object;
};

inline constexpr std::array PEER_NAMES{
    PeerName{"config", "configobj"}, PeerName{"update", "updateobj"}, PeerName{"sound", "soundobj"},
    PeerName{"photo", "photoobj"},   PeerName{"light", "lightobj"},   PeerName{"freq", "freqobj"},
    PeerName{"gps", "gpsobj"},       PeerName{"network", "netobj"},
};
