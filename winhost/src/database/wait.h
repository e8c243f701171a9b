// The time that a call waits for other processes: at most 5 s, or no time if a call that failed less than
// 10 s ago has waited that long.
#pragma once

#include <chrono>

namespace winhost::database {

/// Starts the wait of this thread's call.
void startWait();

/// Pauses. Returns false, without a pause, if the call has waited long enough.
bool wait(std::chrono::microseconds pause);

/// Lets calls wait even if an earlier call has waited in vain.
void allowWaits();

} // namespace winhost::database
