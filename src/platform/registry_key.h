// An owned registry key.
#pragma once

#include "platform/text.h"

#include <windows.h>

#include <utility>

namespace uinfo {

class RegistryKey
{
public:
    RegistryKey() = default;
    explicit RegistryKey(HKEY key) : m_key(key) {}
    RegistryKey(RegistryKey&& other) noexcept : m_key(std::exchange(other.m_key, nullptr)) {}
    RegistryKey& operator=(RegistryKey&& other) noexcept
    {
        std::swap(m_key, other.m_key);
        return *this;
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey()
    {
        if (m_key != nullptr) {
            RegCloseKey(m_key);
        }
    }

    /// Holds no key when it cannot be opened.
    static RegistryKey open(HKEY parent, const wchar_t* path, REGSAM access);
    /// Opened for writing, else created with every missing key on the way; holds no key when neither works.
    static RegistryKey openOrCreate(HKEY parent, const wchar_t* path);

    explicit operator bool() const { return m_key != nullptr; }
    HKEY get() const { return m_key; }
    HKEY release() { return std::exchange(m_key, nullptr); }

    /// Reads a value of any type as text, offering the platform one character less than out holds, so that
    /// the text is terminated whatever is stored. A last odd byte is a character. On failure, also of a value
    /// too long for the offer, out is empty.
    LSTATUS queryText(const wchar_t* valueName, BoundedText& out, DWORD& type) const;
    /// Sets a REG_SZ, terminator included.
    bool setString(const wchar_t* valueName, const wchar_t* text) const;

private:
    HKEY m_key = nullptr;
};

} // namespace uinfo
