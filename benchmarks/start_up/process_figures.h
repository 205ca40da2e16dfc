// What the kernel knows of a running program.

#pragma once

#include <sys/types.h>

#include <string>

namespace start_up {

// A value of /proc/PID/status in kB, such as VmRSS, or -1.
[[nodiscard]] long status_kilobytes(pid_t process, const std::string& name);

// Processor time used so far, user and system, in seconds; by the clock ticks of /proc/PID/stat.
[[nodiscard]] double processor_seconds(pid_t process);

// The same by the scheduler's own account of every thread, which is finer.
[[nodiscard]] double scheduled_seconds(pid_t process);

} // namespace start_up
