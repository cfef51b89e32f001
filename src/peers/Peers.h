#pragma once

#include <functional>

namespace Peers
{

// Creates the proxies of the device's managers and stores them in PeerProxies, each with the time-out of its calls.
// Contacts no service. The sound manager's signals are subscribed from then on; who owns its name, and the photo
// manager's, is known where there is a bus (see PeerOwner). onUpdateManager is called as soon as the update manager's
// proxy stands. Throws std::bad_alloc when there is no memory for a proxy, std::runtime_error when its signals cannot
// be connected, and what onUpdateManager throws.
void CreateProxies(const std::function<void()>& onUpdateManager = [] {});

// Deletes those that exist, for a process in which one scheduler comes after another. No scheduler may live.
void DeleteProxies();

} // namespace Peers
