#include "support/registry.h"

#include <gtest/gtest.h>

#include <ostream>

namespace testing_support {

namespace {

OwnedKey openKey(HKEY root, const std::string& path)
{
    HKEY key = nullptr;
    RegOpenKeyExW(root, Wide(path), 0, KEY_READ, &key);
    return OwnedKey(key);
}

} // namespace

void PrintTo(const RawValue& value, std::ostream* stream)
{
    *stream << value.type << ' ' << testing::PrintToString(value.bytes);
}

RawValue text(const std::string& utf8)
{
    return {REG_SZ, Wide(utf8).bytes()};
}

RawValue dword(std::uint32_t number)
{
    return {REG_DWORD, std::string(reinterpret_cast<const char*>(&number), sizeof number)};
}

OwnedKey makeKey(HKEY root, const std::string& path)
{
    HKEY key = nullptr;
    const LSTATUS made = RegCreateKeyExW(root, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                         KEY_ALL_ACCESS, nullptr, &key, nullptr);
    EXPECT_EQ(made, ERROR_SUCCESS) << path;
    return OwnedKey(key);
}

void removeKey(HKEY root, const std::string& path)
{
    RegDeleteTreeW(root, Wide(path));
}

void setRaw(HKEY root, const std::string& path, const std::string& name, const RawValue& value)
{
    const std::string data = value.bytes + "##"; // the system adds a terminator that it finds behind a text
    const auto* const bytes = reinterpret_cast<const BYTE*>(data.data());
    const auto size = static_cast<DWORD>(value.bytes.size());
    const LSTATUS set = RegSetValueExW(makeKey(root, path).get(), Wide(name), 0, value.type, bytes, size);
    EXPECT_EQ(set, ERROR_SUCCESS) << path << ' ' << name;
}

void remakeKey(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value)
{
    removeKey(root, path);
    makeKey(root, path);
    if (value) {
        setRaw(root, path, name, *value);
    }
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

std::string tree(HKEY root, const std::string& path)
{
    const OwnedKey key = openKey(root, path);
    std::string lines = key == nullptr ? "" : '[' + path + "]\n";
    constexpr DWORD size = 16384; // of the longest
    static wchar_t name[size];
    for (const bool values : {true, false}) {
        for (DWORD i = 0, length = size; enumerate(values, key.get(), i, name, &length) == ERROR_SUCCESS;
             ++i, length = size) {
            const std::string found = utf8(name);
            lines += values ? found + '=' + testing::PrintToString(getRaw(root, path, found).value()) + '\n'
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
