#pragma once

// Functions as the daemon's code calls them, replaced while linking by ones that can be told to fail.
namespace BrokenFunctions
{

inline int goodLines = -1;       // after so many lines reading a file throws; negative: never
inline int goodConnections = -1; // after so many connections one cannot be made; negative: all can
inline bool cannotConnect = false;
inline bool cannotSplit = false; // a line's tokens cannot be had
inline bool hasReadError = false;

// All work again.
inline void Mend()
{
    goodLines = -1;
    goodConnections = -1;
    cannotConnect = false;
    cannotSplit = false;
    hasReadError = false;
}

} // namespace BrokenFunctions
