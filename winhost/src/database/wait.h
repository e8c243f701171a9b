// A transaction waits at most 5 s for other processes. After a transaction has reached this limit, the limit
// is reduced to 0.1 s for the next 10 s.
#pragma once

#include <chrono>

namespace winhost::database {

/// Call this when this thread begins a transaction.
void startWait();

/// Pauses and returns true; returns false at once if the time limit has passed.
bool wait(std::chrono::microseconds pause);

/// Resets the limit to 5 s.
void allowWaits();

} // namespace winhost::database
