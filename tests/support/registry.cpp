#include "support/registry.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <sstream>
#include <vector>

namespace testing_support {

namespace {

constexpr DWORD longestName = 16384;

class Key
{
public:
    Key(HKEY root, const std::string& path, REGSAM access)
    {
        if (RegOpenKeyExW(root, Wide(path), 0, access, &m_key) != ERROR_SUCCESS) {
            m_key = nullptr;
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key()
    {
        if (m_key != nullptr) {
            RegCloseKey(m_key);
        }
    }
    explicit operator bool() const { return m_key != nullptr; }
    HKEY get() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

std::optional<RawValue> query(HKEY key, const wchar_t* name)
{
    RawValue value;
    DWORD size = 0;
    if (RegQueryValueExW(key, name, nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::vector<BYTE> data(size + 2);
    if (RegQueryValueExW(key, name, nullptr, &value.type, data.data(), &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    value.bytes.assign(reinterpret_cast<const char*>(data.data()), size);
    return value;
}

void describe(HKEY key, const std::string& path, std::ostream& out)
{
    out << '[' << path << "]\n";
    std::vector<wchar_t> name(longestName);
    for (DWORD index = 0;; ++index) {
        DWORD length = longestName;
        if (RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        out << utf8(name.data()) << '='
            << testing::PrintToString(query(key, name.data()).value_or(RawValue{})) << '\n';
    }
    for (DWORD index = 0;; ++index) {
        DWORD length = longestName;
        if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            break;
        }
        if (const Key child(key, utf8(name.data()), KEY_READ); child) {
            describe(child.get(), path + '\\' + utf8(name.data()), out);
        }
    }
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

void makeKey(HKEY root, const std::string& path)
{
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(root, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key,
                              nullptr),
              ERROR_SUCCESS)
        << path;
    RegCloseKey(key);
}

bool keyExists(HKEY root, const std::string& path)
{
    return static_cast<bool>(Key(root, path, KEY_READ));
}

void removeKey(HKEY root, const std::string& path)
{
    RegDeleteTreeW(root, Wide(path));
}

void setRaw(HKEY root, const std::string& path, const std::string& name, const RawValue& value)
{
    makeKey(root, path);
    const Key key(root, path, KEY_WRITE);
    const std::string data = value.bytes + "##"; // the system adds a terminator that it finds behind a text
    ASSERT_EQ(RegSetValueExW(key.get(), Wide(name), 0, value.type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(value.bytes.size())),
              ERROR_SUCCESS)
        << path << ' ' << name;
}

std::optional<RawValue> getRaw(HKEY root, const std::string& path, const std::string& name)
{
    const Key key(root, path, KEY_READ);
    return key ? query(key.get(), Wide(name)) : std::nullopt;
}

std::string tree(HKEY root, const std::string& path)
{
    std::ostringstream out;
    if (const Key key(root, path, KEY_READ); key) {
        describe(key.get(), path, out);
    }
    return out.str();
}

void addUninstallEntry(int lcid)
{
    setRaw(HKEY_LOCAL_MACHINE,
           "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{5C3D71E0-B00F-" + std::to_string(lcid) +
               "-C10E-9E40B6D2F815}",
           "UninstallString", text("uninstall.exe"));
}

} // namespace testing_support
