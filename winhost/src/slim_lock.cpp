// The slim lock: one machine word, which is null while the lock is free.
#include <windows.h>

#include <atomic>

void AcquireSRWLockExclusive(SRWLOCK* lock)
{
    const std::atomic_ref<void*> state(lock->Ptr);
    while (state.exchange(lock, std::memory_order_acquire) != nullptr) {
        state.wait(lock, std::memory_order_relaxed);
    }
}

void ReleaseSRWLockExclusive(SRWLOCK* lock)
{
    const std::atomic_ref<void*> state(lock->Ptr);
    state.store(nullptr, std::memory_order_release);
    state.notify_one();
}
