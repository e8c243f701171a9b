// What the registry calls share.
#pragma once

#include "registry/handles.h"

namespace winhost::registry {

/// Runs use(transaction, key) in a view of the registry, on a key that must have been opened with the rights.
template <typename Use>
LSTATUS readKey(HKEY key, REGSAM needed, Use use)
{
    OpenKey opened;
    if (const LSTATUS status = resolve(key, needed, opened)) {
        return status;
    }
    const ReadTransaction in;
    return in.status() != ERROR_SUCCESS ? in.status() : use(in, opened);
}

/// The same for changes, which are kept if use(transaction, key) succeeds.
template <typename Use>
LSTATUS changeKey(HKEY key, REGSAM needed, Use use)
{
    OpenKey opened;
    if (const LSTATUS status = resolve(key, needed, opened)) {
        return status;
    }
    WriteTransaction in;
    if (in.status() != ERROR_SUCCESS) {
        return in.status();
    }
    const LSTATUS status = use(in.get(), opened);
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

inline void giveTime(FILETIME* out, std::uint64_t time)
{
    if (out != nullptr) {
        *out = {static_cast<DWORD>(time), static_cast<DWORD>(time >> 32)};
    }
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

} // namespace winhost::registry
