// The lock: one pointer-sized word, so that making it can not fail.
#include "RkOsBase.h"

#include <atomic>

RkLocker::RkLocker() : m_mutex(nullptr) {}

RkLocker::~RkLocker() = default;

void RkLocker::lock()
{
    void* const locked = this;
    const std::atomic_ref<void*> state(m_mutex);
    while (state.exchange(locked, std::memory_order_acquire) != nullptr) {
        state.wait(locked, std::memory_order_relaxed);
    }
}

void RkLocker::unlock()
{
    const std::atomic_ref<void*> state(m_mutex);
    state.store(nullptr, std::memory_order_release);
    state.notify_one();
}
