#include "support/registry.h"

namespace testing_support {

RawValue text(const std::string& utf8)
{
    return {REG_SZ, Wide(utf8).bytes()};
}

RawValue dword(std::uint32_t number)
{
    return {REG_DWORD, std::string(reinterpret_cast<const char*>(&number), sizeof number)};
}

OwnedKey openKey(HKEY root, const std::string& path, REGSAM access)
{
    HKEY key = nullptr;
    const LSTATUS opened = RegOpenKeyExW(root, Wide(path), 0, access, &key);
    return OwnedKey(opened == ERROR_SUCCESS ? key : nullptr);
}

OwnedKey makeKey(HKEY root, const std::string& path)
{
    HKEY key = nullptr;
    RegCreateKeyExW(root, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &key,
                    nullptr);
    return OwnedKey(key);
}

void removeKey(HKEY root, const std::string& path)
{
    RegDeleteTreeW(root, Wide(path));
}

LSTATUS setRaw(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value)
{
    const OwnedKey key = makeKey(root, path);
    if (!value) {
        return ERROR_SUCCESS;
    }
    // "##" follows the data, because the system might also store a terminator in that place.
    const std::string data = value->bytes + "##";
    return RegSetValueExW(key.get(), Wide(name), 0, value->type, reinterpret_cast<const BYTE*>(data.data()),
                          static_cast<DWORD>(value->bytes.size()));
}

void remakeKey(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value)
{
    removeKey(root, path);
    setRaw(root, path, name, value);
}

std::optional<RawValue> getRaw(HKEY root, const std::string& path, const std::string& name)
{
    const OwnedKey key = openKey(root, path);
    RawValue value;
    DWORD size = 0;
    RegQueryValueExW(key.get(), Wide(name), nullptr, nullptr, nullptr, &size);
    value.bytes.resize(size);
    auto* const bytes = reinterpret_cast<BYTE*>(value.bytes.data());
    const LSTATUS status = RegQueryValueExW(key.get(), Wide(name), nullptr, &value.type, bytes, &size);
    return status == ERROR_SUCCESS ? std::optional(value) : std::nullopt;
}

LSTATUS enumerate(bool values, HKEY key, DWORD index, wchar_t* name, DWORD* length)
{
    return values ? RegEnumValueW(key, index, name, length, nullptr, nullptr, nullptr, nullptr)
                  : RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}

std::string print(const RawValue& value)
{
    std::string line(1, static_cast<char>('0' + value.type));
    for (const char byte : value.bytes) {
        line += {"0123456789abcdef"[byte >> 4 & 0xF], "0123456789abcdef"[byte & 0xF]};
    }
    return line;
}

std::string tree(HKEY root, const std::string& path)
{
    const OwnedKey key = openKey(root, path);
    std::string lines = key == nullptr ? "" : '[' + path + "]\n";
    constexpr DWORD size = 16384; // a value name can have at most 16,383 characters
    static wchar_t name[size];
    for (const bool values : {true, false}) {
        for (DWORD i = 0, length = size; enumerate(values, key.get(), i, name, &length) == ERROR_SUCCESS;
             ++i, length = size) {
            const std::string found = utf8(name);
            lines += values ? found + '=' + print(*getRaw(root, path, found)) + '\n'
                            : tree(root, path + '\\' + found);
        }
    }
    return lines;
}

void addUninstallEntry(long lcid)
{
    setRaw(HKEY_LOCAL_MACHINE,
           "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{5C3D71E0-B00F-" + std::to_string(lcid) +
               "-C10E-9E40B6D2F815}",
           "UninstallString", text("uninstall.exe"));
}

} // namespace testing_support
