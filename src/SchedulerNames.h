#pragma once

// Where the scheduler stands on the session bus.
namespace SchedulerNames
{

inline constexpr const char* SERVICE = "com.kestrelix.ozna.scheduler";
inline constexpr const char* OBJECT_PATH = "/com/kestrelix/ozna/scheduler/schedulerobj";

} // namespace SchedulerNames
