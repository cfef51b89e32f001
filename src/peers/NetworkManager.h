#pragma once

#include "PeerReply.h"

// The client of the network manager. Each request waits for its answer, as long as the bus library does.
namespace NetworkManager
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.networkmanager";
inline constexpr const char* PATH = "/com/kestrelix/ozna/networkmanager/netobj";

inline constexpr const char* ENABLE_LAN = "EnableLan";
inline constexpr const char* DISABLE_LAN = "DisableLan";

// With an address from DHCP.
[[nodiscard]] PeerReply EnableLan();
[[nodiscard]] PeerReply DisableLan();

} // namespace NetworkManager
