#pragma once

// Where the scheduler stands on the session bus, and what it starts with.
namespace SchedulerNames
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.scheduler";
inline constexpr const char* OBJECT_PATH = "/com/kestrelix/ozna/scheduler/schedulerobj";

// The schedule that it starts with, in the schedule folder.
inline constexpr const char* START_FILE = "schedule.csv";

} // namespace SchedulerNames
