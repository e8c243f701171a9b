// Limits the time that a call waits for other processes to 5 s. After a call has waited in vain, calls do not
// wait for 10 s.
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
