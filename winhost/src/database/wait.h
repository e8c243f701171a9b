// The time that a call waits for other processes: at most 5 s, or no time if a call that failed less than
// 10 s ago has waited that long.
#pragma once

#include <chrono>

namespace winhost::database {

/// Sets the end of this thread's waits. Every call begins with startWait().
void startWait();

/// Pauses, and returns true. Returns false at once if this thread may not wait any longer.
bool wait(std::chrono::microseconds pause);

/// Lets calls wait again, although an earlier call has waited in vain.
void allowWaits();

} // namespace winhost::database
