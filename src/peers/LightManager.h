#pragma once

#include "PeerReply.h"

// The client of the light manager. Each request waits for its answer, as long as the bus library does.
namespace LightManager
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.lightmanager";
inline constexpr const char* PATH = "/com/kestrelix/ozna/lightmanager/lightobj";

inline constexpr const char* SET_INTENSITY = "SetIntensity";
inline constexpr const char* SWITCH = "Switch";

[[nodiscard]] PeerReply SetIntensity(unsigned int intensity);
[[nodiscard]] PeerReply Switch(bool on);

} // namespace LightManager
