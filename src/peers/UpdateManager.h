#pragma once

class UpdateManagerProxy;

// The client of the update manager, which is asked for nothing: it announces what it has installed.
namespace UpdateManager
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.updatemanager";
inline constexpr const char* PATH = "/com/kestrelix/ozna/updatemanager/updateobj";
inline constexpr int TIMEOUT_MS = 2000;

// The sender of its signals; null before Peers has created the proxies.
[[nodiscard]] const UpdateManagerProxy* Signals();

} // namespace UpdateManager
