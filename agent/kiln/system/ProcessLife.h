#pragma once

#include <sys/types.h>

#include <cstdint>

namespace kiln {

/// When a process started, in clock ticks since the system did: with the pid it names a process for good,
/// since pids come round again. 0 when there is no such process, or it has ended and only waits to be reaped.
uint64_t ProcessStartTime(pid_t pid);

}  // namespace kiln
