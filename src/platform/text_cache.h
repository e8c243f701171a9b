// Strings that are built on first use and then cached.
#pragma once

#include "platform/text.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

namespace uinfo {

/// Returns `cache`. If the cache is empty, calls `fill` with a BoundedText, and caches the string if `fill`
/// returns true. May be called from any thread, so several threads may call `fill` at once; the first result
/// is cached.
/// A filled cache never changes and is read without a lock.
template <std::size_t Capacity, typename Fill>
const wchar_t* cachedText(wchar_t (&cache)[Capacity], Fill fill)
{
    const std::atomic_ref<wchar_t> first(cache[0]);
    if (first.load(std::memory_order_acquire) != 0) {
        return cache;
    }
    TextBuffer<Capacity> text;
    if (!fill(static_cast<BoundedText&>(text))) {
        return cache;
    }
    static SRWLOCK publishing = SRWLOCK_INIT;
    AcquireSRWLockExclusive(&publishing);
    if (first.load(std::memory_order_relaxed) == 0) {
        std::copy_n(text.text() + 1, text.length(), cache + 1);
        first.store(*text.text(), std::memory_order_release);
    }
    ReleaseSRWLockExclusive(&publishing);
    return cache;
}

} // namespace uinfo
