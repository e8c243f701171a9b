// An owned registry key.
#pragma once

#include "platform/text.h"

#include <windows.h>

#include <memory>
#include <type_traits>

namespace uinfo {

class RegistryKey
{
public:
    RegistryKey() = default;
    explicit RegistryKey(HKEY key) : m_key(key) {}

    /// Opens a key. On failure, the result holds no key, and the thread's last error is set to the reason.
    static RegistryKey open(HKEY parent, const wchar_t* path, REGSAM access);
    /// Opens a key for writing, or creates it and any missing parents. On failure, the result holds no key.
    static RegistryKey openOrCreate(HKEY parent, const wchar_t* path);

    explicit operator bool() const { return m_key != nullptr; }
    HKEY get() const { return m_key.get(); }
    HKEY release() { return m_key.release(); }

    /// Reads a value of any type as a string. Reads at most out.capacity() - 1 characters, because the
    /// stored data may lack a terminator. If the number of bytes is odd, the last byte counts as a character.
    /// If the value is too long, returns ERROR_MORE_DATA. On failure, `out` is cleared.
    LSTATUS queryText(const wchar_t* valueName, BoundedText& out, DWORD& type) const;
    /// Writes a REG_SZ value, including the terminator.
    bool setString(const wchar_t* valueName, const wchar_t* text) const;

private:
    struct Close
    {
        void operator()(HKEY key) const { RegCloseKey(key); }
    };

    std::unique_ptr<std::remove_pointer_t<HKEY>, Close> m_key;
};

} // namespace uinfo
