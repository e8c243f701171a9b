#include "database/wait.h"

#include <atomic>
#include <thread>

namespace winhost::database {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds longest{5000};
constexpr std::chrono::milliseconds longestIfHopeless{100};

std::atomic<Clock::time_point> hopeless = Clock::time_point(); // before this time, waits are short
thread_local Clock::time_point end;                            // of the waits of this thread's transaction

} // namespace

void startWait()
{
    const Clock::time_point now = Clock::now();
    end = now + (now < hopeless.load() ? longestIfHopeless : longest);
}

bool wait(std::chrono::microseconds pause)
{
    const Clock::time_point now = Clock::now();
    if (now >= end) {
        if (now >= hopeless.load()) {
            hopeless = now + 2 * longest;
        }
        return false;
    }
    std::this_thread::sleep_for(pause);
    return true;
}

void allowWaits()
{
    hopeless = Clock::time_point();
}

} // namespace winhost::database
