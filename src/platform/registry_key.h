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

    /// Holds no key when it cannot be opened.
    static RegistryKey open(HKEY parent, const wchar_t* path, REGSAM access);
    /// Opened for writing, else created with every missing key on the way; holds no key when neither works.
    static RegistryKey openOrCreate(HKEY parent, const wchar_t* path);

    explicit operator bool() const { return m_key != nullptr; }
    HKEY get() const { return m_key.get(); }
    HKEY release() { return m_key.release(); }

    /// Reads a value of any type as text, offering the platform one character less than out holds, so that
    /// the text is terminated whatever is stored. A last odd byte is a character. On failure, also of a value
    /// too long for the offer, out is empty.
    LSTATUS queryText(const wchar_t* valueName, BoundedText& out, DWORD& type) const;
    /// Sets a REG_SZ, terminator included.
    bool setString(const wchar_t* valueName, const wchar_t* text) const;

private:
    struct Close
    {
        void operator()(HKEY key) const { RegCloseKey(key); }
    };

    std::unique_ptr<std::remove_pointer_t<HKEY>, Close> m_key;
};

} // namespace uinfo
