#pragma once

#include "PeerReply.h"

// The client of the GPS manager. Each request waits for its answer.
namespace GpsManager
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.gpsmanager";
inline constexpr const char* PATH = "/com/kestrelix/ozna/gpsmanager/gpsobj";
inline constexpr int FIRST_TIMEOUT_MS = 2000;
inline constexpr int TIMEOUT_MS = 5000; // once all proxies stand

inline constexpr const char* SET_ENABLED = "SetEnabled";

[[nodiscard]] PeerReply SetEnabled(bool enabled);

} // namespace GpsManager
