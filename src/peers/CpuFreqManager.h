#pragma once

#include "PeerReply.h"

// The client of the manager of the processor's frequency. Each request waits for its answer.
namespace CpuFreqManager
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.freqmanager";
inline constexpr const char* PATH = "/com/kestrelix/ozna/freqmanager/freqobj";
inline constexpr int TIMEOUT_MS = 2000;

inline constexpr const char* SET_FREQ = "SetFreq";

[[nodiscard]] PeerReply SetFreq(int frequencyMHz);

} // namespace CpuFreqManager
