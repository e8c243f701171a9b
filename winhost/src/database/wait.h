// Limits the time that a transaction waits for other processes to 5 s. If a transaction has waited 5 s in
// vain, the limit is 0.1 s for the next 10 s.
#pragma once

#include <chrono>

namespace winhost::database {

/// Starts the time limit of this thread's transaction.
void startWait();

/// Pauses and returns true; returns false at once if the time limit has passed.
bool wait(std::chrono::microseconds pause);

/// Sets the limit to 5 s again.
void allowWaits();

} // namespace winhost::database
