// Texts that are worked out on first use and kept.
#pragma once

#include "platform/text.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

namespace uinfo {

/// The text kept in cache, filled by fill(BoundedText&) while it is empty; cache as it is, still empty, where
/// fill gives false. Safe from several threads: a filled cache is read without a lock and never changes, and
/// threads that come first together each work out the text, of which one is kept.
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
