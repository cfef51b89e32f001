#pragma once

#include <array>

// Where one of the device's managers is on the bus. Not taken from the scheduler on purpose: a peer that shared its
// constants would repeat its mistakes.
struct PeerAddress
{
    const char* interface; // also the name of its description, without the suffix
    const char* service;
    const char* path;
    const char* shortName; // for people
};

inline constexpr std::array PEER_TABLE{
    PeerAddress{"com.kestrelix.ozna.configinterface", "com.kestrelix.ozna.configmanager",
                "/com/kestrelix/ozna/configmanager/configobj", "config"},
    PeerAddress{"com.kestrelix.ozna.updateinterface", "com.kestrelix.ozna.updatemanager",
                "/com/kestrelix/ozna/updatemanager/updateobj", "update"},
    PeerAddress{"com.kestrelix.ozna.soundinterface", "com.kestrelix.ozna.soundmanager",
                "/com/kestrelix/ozna/soundmanager/soundobj", "sound"},
    PeerAddress{"com.kestrelix.ozna.photointerface", "com.kestrelix.ozna.photomanager",
                "/com/kestrelix/ozna/photomanager/photoobj", "photo"},
    PeerAddress{"com.kestrelix.ozna.lightinterface", "com.kestrelix.ozna.lightmanager",
                "/com/kestrelix/ozna/lightmanager/lightobj", "light"},
    PeerAddress{"com.kestrelix.ozna.freqinterface", "com.kestrelix.ozna.freqmanager",
                "/com/kestrelix/ozna/freqmanager/freqobj", "freq"},
    PeerAddress{"com.kestrelix.ozna.gpsinterface", "com.kestrelix.ozna.gpsmanager",
                "/com/kestrelix/ozna/gpsmanager/gpsobj", "gps"},
    PeerAddress{"com.kestrelix.ozna.networkinterface", "com.kestrelix.ozna.networkmanager",
                "/com/kestrelix/ozna/networkmanager/netobj", "network"},
};
