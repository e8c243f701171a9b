// Limits the time that a transaction waits for other processes to 5 s. For 10 s after such a wait in vain,
// the limit is 0.1 s.
#pragma once

#include <chrono>

namespace winhost::database {

/// Sets the end of this thread's waits. Every transaction begins with startWait().
void startWait();

/// Pauses, and returns true. Returns false at once if this thread may not wait any longer.
bool wait(std::chrono::microseconds pause);

/// Sets the limit to 5 s again.
void allowWaits();

} // namespace winhost::database
