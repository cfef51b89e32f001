#pragma once

// What the tool's exit status tells; part of its contract, see its manual page.
namespace ExitStatus
{

inline constexpr int CLEAN = 0;
inline constexpr int WARNINGS = 1;  // of a check, where it is told to be strict
inline constexpr int DIFFERENT = 1; // are the starts of two schedules that are compared
inline constexpr int ERRORS = 2;    // in the schedule
inline constexpr int FAILED = 3;    // the tool could not do what it was asked for
inline constexpr int INTERRUPTED = 130;

} // namespace ExitStatus
