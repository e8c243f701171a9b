#include "support/registry.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

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
    static constexpr char digits[] = "0123456789abcdef";
    *stream << value.type << ':';
    for (const char byte : value.bytes) {
        *stream << digits[static_cast<unsigned char>(byte) >> 4] << digits[byte & 15];
    }
}

RawValue text(const std::string& utf8)
{
    return {REG_SZ, Wide(utf8).bytes()};
}

RawValue dword(std::uint32_t number)
{
    return {REG_DWORD, std::string(reinterpret_cast<const char*>(&number), sizeof number)};
}

OwnedKey createKey(HKEY root, const std::string& path)
{
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExW(root, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                              &key, nullptr),
              ERROR_SUCCESS)
        << path;
    return OwnedKey(key);
}

void makeKey(HKEY root, const std::string& path)
{
    createKey(root, path);
}

bool keyExists(HKEY root, const std::string& path)
{
    return openKey(root, path) != nullptr;
}

void removeKey(HKEY root, const std::string& path)
{
    RegDeleteTreeW(root, Wide(path));
}

void setRaw(HKEY root, const std::string& path, const std::string& name, const RawValue& value)
{
    const OwnedKey key = createKey(root, path);
    const std::string data = value.bytes + "##"; // the system adds a terminator that it finds behind a text
    ASSERT_EQ(RegSetValueExW(key.get(), Wide(name), 0, value.type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(value.bytes.size())),
              ERROR_SUCCESS)
        << path << ' ' << name;
}

std::optional<RawValue> getRaw(HKEY root, const std::string& path, const std::string& name)
{
    const OwnedKey key = openKey(root, path);
    const Wide wideName(name);
    RawValue value;
    DWORD size = 0;
    if (key == nullptr ||
        RegQueryValueExW(key.get(), wideName, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::vector<BYTE> data(size + 2);
    if (RegQueryValueExW(key.get(), wideName, nullptr, &value.type, data.data(), &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    value.bytes.assign(reinterpret_cast<const char*>(data.data()), size);
    return value;
}

LSTATUS enumerate(bool values, HKEY key, DWORD index, wchar_t* name, DWORD* length)
{
    return values ? RegEnumValueW(key, index, name, length, nullptr, nullptr, nullptr, nullptr)
                  : RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}

std::vector<std::string> namesIn(bool values, HKEY key)
{
    constexpr DWORD longest = 16384;
    std::vector<std::string> names;
    std::vector<wchar_t> name(longest);
    DWORD length = longest;
    while (enumerate(values, key, static_cast<DWORD>(names.size()), name.data(), &length) == ERROR_SUCCESS) {
        names.push_back(utf8(name.data()));
        length = longest;
    }
    return names;
}

std::string tree(HKEY root, const std::string& path)
{
    const OwnedKey key = openKey(root, path);
    if (key == nullptr) {
        return "";
    }
    std::string lines = '[' + path + "]\n";
    for (const std::string& name : namesIn(true, key.get())) {
        lines += name + '=' + testing::PrintToString(getRaw(root, path, name).value_or(RawValue{})) + '\n';
    }
    for (const std::string& name : namesIn(false, key.get())) {
        lines += tree(root, path + '\\' + name);
    }
    return lines;
}

void addUninstallEntry(int lcid)
{
    setRaw(HKEY_LOCAL_MACHINE,
           "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{5C3D71E0-B00F-" + std::to_string(lcid) +
               "-C10E-9E40B6D2F815}",
           "UninstallString", text("uninstall.exe"));
}

} // namespace testing_support
