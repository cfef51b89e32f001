#pragma once

namespace Peers
{

// Creates the proxies of the device's managers and stores them in the scheduler's static members, each with the
// time-out of its calls. Contacts no service. Throws std::bad_alloc when there is no memory for one.
void CreateProxies();

} // namespace Peers
