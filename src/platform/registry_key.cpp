#include "platform/registry_key.h"

#include <cstring>

namespace uinfo {

RegistryKey RegistryKey::open(HKEY parent, const wchar_t* path, REGSAM access)
{
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(parent, path, 0, access, &key);
    if (status != ERROR_SUCCESS) {
        SetLastError(static_cast<DWORD>(status));
    }
    return RegistryKey(status == ERROR_SUCCESS ? key : nullptr);
}

RegistryKey RegistryKey::openOrCreate(HKEY parent, const wchar_t* path)
{
    RegistryKey opened = open(parent, path, KEY_WRITE);
    if (opened) {
        return opened;
    }
    HKEY key = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr);
    return RegistryKey(status == ERROR_SUCCESS ? key : nullptr);
}

LSTATUS RegistryKey::queryText(const wchar_t* valueName, BoundedText& out, DWORD& type) const
{
    auto size = static_cast<DWORD>((out.capacity() - 1) * sizeof(wchar_t));
    const LSTATUS status =
        RegQueryValueExW(get(), valueName, nullptr, &type, reinterpret_cast<BYTE*>(out.data()), &size);
    if (status != ERROR_SUCCESS) {
        out.cut(0);
        return status;
    }
    std::memset(reinterpret_cast<BYTE*>(out.data()) + size, 0,
                size % sizeof(wchar_t)); // sets the missing half of the last character to zero
    out.cut((size + 1) / sizeof(wchar_t));
    out.measure(); // the stored data may contain a terminator
    return status;
}

bool RegistryKey::setString(const wchar_t* valueName, const wchar_t* text) const
{
    const auto size = static_cast<DWORD>((length(text) + 1) * sizeof(wchar_t));
    return RegSetValueExW(get(), valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size) ==
           ERROR_SUCCESS;
}

} // namespace uinfo
