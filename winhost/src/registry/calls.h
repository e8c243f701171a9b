// What the registry calls share.
#pragma once

#include "registry/cache.h"
#include "registry/handles.h"

#include <new>

namespace winhost::registry {

/// Runs use(node) on a key that must have been opened with the rights.
template <typename Use>
LSTATUS onKey(HKEY key, REGSAM needed, Use use)
{
    NodeId node = 0;
    if (const LSTATUS status = resolve(key, needed, node)) {
        return status;
    }
    try {
        return use(node);
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

/// Asks the store what is not remembered.
template <typename Use>
LSTATUS read(Use use)
{
    const Access in(Access::eReading);
    return in.status() != ERROR_SUCCESS ? in.status() : use();
}

/// Changes the store in one transaction, which is kept if use() succeeds.
template <typename Use>
LSTATUS change(Use use)
{
    Access in(Access::eWriting);
    const LSTATUS status = in.status() != ERROR_SUCCESS ? in.status() : use();
    return status != ERROR_SUCCESS ? status : in.commit();
}

/// Fills an optional result.
template <typename Result, typename Value>
void give(Result* out, Value value)
{
    if (out != nullptr) {
        *out = static_cast<Result>(value);
    }
}

/// Last-write times are not kept.
inline void giveNoTime(FILETIME* out)
{
    give(out, FILETIME());
}

/// Copies a text with its terminator if there is room for both, and gives its length then.
inline bool giveText(TextView text, wchar_t* out, DWORD* length)
{
    if (text.size() >= *length) {
        return false;
    }
    *length = static_cast<DWORD>(copyText(text, out, *length));
    return true;
}

/// Classes are not kept: each is empty. False where there is no room for the terminator.
inline bool giveNoClass(wchar_t* out, DWORD* length)
{
    const bool fits = out == nullptr || length == nullptr || giveText({}, out, length);
    give(length, 0);
    return fits;
}

} // namespace winhost::registry
