#include "user_registry.h"

#include <windows.h>

#include <memory>
#include <vector>

namespace {

struct CloseKey
{
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<HKEY__, CloseKey>;

Key open(const std::string& path)
{
    HKEY key = nullptr;
    const LSTATUS status =
        RegOpenKeyExW(HKEY_CURRENT_USER, rkuinfo::Argument(utf16(path)), 0, KEY_READ, &key);
    return Key(status == ERROR_SUCCESS ? key : nullptr);
}

} // namespace

bool userKeyExists(const std::string& key)
{
    return open(key) != nullptr;
}

Text readUserText(const std::string& key, const wchar_t* name, std::size_t maxBytes)
{
    const Key opened = open(key);
    std::vector<wchar_t> text(maxBytes / sizeof(wchar_t) + 1); // what is stored may lack its terminator
    auto size = static_cast<DWORD>(maxBytes);
    DWORD type = REG_NONE;
    const bool read =
        opened && RegQueryValueExW(opened.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()),
                                   &size) == ERROR_SUCCESS;
    return read && type == REG_SZ ? rkuinfo::text(text.data()) : Text();
}
