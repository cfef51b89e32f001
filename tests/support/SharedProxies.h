#pragma once

// The proxies that the scheduler's constructor creates and nobody deletes: one set a process is none too many, one a
// test row would be.
namespace SharedProxies
{

// Deletes those that exist. No scheduler may live.
void Delete();

// Deletes those that exist and creates them anew.
void Renew();

} // namespace SharedProxies
