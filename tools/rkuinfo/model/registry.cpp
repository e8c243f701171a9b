#include "model/registry.h"

#include "model/system.h"
#include "text/print.h"

#include <algorithm>

namespace {

using rkuinfo::Argument;

constexpr const char* userRoot = "HKEY_CURRENT_USER";

struct Reason
{
    LSTATUS status;
    const char* words;
    const char* remedy;
};

constexpr Reason reasons[] = {
    {ERROR_FILE_NOT_FOUND, "not found", ""},
    {ERROR_ACCESS_DENIED, "access is denied", "give the user the right to it"},
    {ERROR_NOT_ENOUGH_MEMORY, "there is no memory", "end other programs"},
    {ERROR_INVALID_PARAMETER, "the name is not possible", "choose another one"},
    {ERROR_DISK_FULL, "the disk is full", "make room on it"},
    {ERROR_LOCK_FAILED, "another process keeps it from writing", "end that one, or try again"},
    {ERROR_FILE_TOO_LARGE, "its file may not grow further", "raise the limit of a file's size"},
    {ERROR_BADDB, "the registry is damaged or of another format",
     "move it away: the next start makes a new one"},
    {ERROR_CANTOPEN, "it cannot be opened", "look for its folder and the rights to it"},
    {ERROR_CANTWRITE, "it cannot be written", "look for room and for the rights to its folder"},
    {ERROR_REGISTRY_CORRUPT, "the registry is damaged", "move it away: the next start makes a new one"},
    {ERROR_REGISTRY_IO_FAILED, "the registry cannot be read or written", "look for a fault of the disk"},
    {ERROR_KEY_DELETED, "another process has removed it", "try again"},
    {ERROR_NO_SYSTEM_RESOURCES, "the system is short of resources", "end other programs"},
    {ERROR_TOO_MANY_OPEN_FILES, "the process has too many files open", "end other programs"},
};

Trouble trouble(LSTATUS status, const std::string& key)
{
    const auto* const found = std::ranges::find(reasons, status, &Reason::status);
    const bool isKnown = found != std::end(reasons);
    return {key + ": " + (isKnown ? std::string(found->words) + ", " : "") + "error " +
                std::to_string(status) + registryPlace(),
            isKnown ? found->remedy : ""};
}

[[noreturn]] void refuseAt(LSTATUS status, const Text& path)
{
    const Trouble told = trouble(status, userRoot + ('\\' + shown(path)));
    throw Failure(told.problem + (told.remedy.empty() ? "" : "; " + told.remedy));
}

Text joined(const Text& key, const Text& name)
{
    return name.empty() ? key : joinedKey(key, name);
}

/// The keys that a command goes down may each have a path of any length, but for the one that it names.
std::optional<HKEY> open(HKEY parent, const Text& name, unsigned long access, const Text& told)
{
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(parent, Argument(name), 0, static_cast<REGSAM>(access), &key);
    if (status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND) {
        return std::nullopt;
    }
    if (status != ERROR_SUCCESS) {
        refuseAt(status, told);
    }
    return key;
}

} // namespace

void Key::refuse(LSTATUS status) const
{
    refuseAt(status, m_path);
}

std::optional<Key> Key::find(const Text& path, unsigned long access)
{
    const std::optional<HKEY> key = open(HKEY_CURRENT_USER, path, access, path);
    return key ? std::optional(Key(*key, path)) : std::nullopt;
}

Key Key::make(const Text& path)
{
    HKEY key = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(HKEY_CURRENT_USER, Argument(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_READ | KEY_WRITE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) {
        refuseAt(status, path);
    }
    return {key, path};
}

std::optional<Key> Key::below(const Text& name) const
{
    const std::optional<HKEY> key = open(m_key.get(), name, KEY_READ, joined(m_path, name));
    return key ? std::optional(Key(*key, joined(m_path, name))) : std::nullopt;
}

std::vector<Text> Key::keys() const
{
    std::vector<Text> names;
    std::vector<wchar_t> name(257); // the longest that there is, terminator counted
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        const LSTATUS status =
            RegEnumKeyExW(m_key.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return names;
        }
        if (status != ERROR_SUCCESS) {
            refuse(status);
        }
        names.push_back(rkuinfo::text(name.data()));
    }
}

std::vector<Value> Key::values() const
{
    std::vector<Value> values;
    std::vector<wchar_t> name(16384); // the longest that there is, terminator counted
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        const LSTATUS status =
            RegEnumValueW(m_key.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return values;
        }
        if (status != ERROR_SUCCESS) {
            refuse(status);
        }
        if (std::optional<Value> found = value(rkuinfo::text(name.data()))) {
            values.push_back(std::move(*found));
        }
    }
}

std::optional<Value> Key::value(const Text& name) const
{
    const Argument argument(name);
    Value value = {name, REG_NONE, {}};
    DWORD type = REG_NONE;
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(m_key.get(), argument, nullptr, &type, nullptr, &size);
    do { // until another process leaves it as long as it was
        value.data.resize(size);
        if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
            BYTE none = 0;
            status = RegQueryValueExW(m_key.get(), argument, nullptr, &type,
                                      size == 0 ? &none : reinterpret_cast<BYTE*>(value.data.data()), &size);
        }
    } while (status == ERROR_MORE_DATA);
    if (status == ERROR_FILE_NOT_FOUND) {
        return std::nullopt;
    }
    if (status != ERROR_SUCCESS) {
        refuse(status);
    }
    value.data.resize(size);
    value.type = type;
    return value;
}

void Key::set(const Value& value) const
{
    const LSTATUS status = RegSetValueExW(
        m_key.get(), Argument(value.name), 0, static_cast<DWORD>(value.type),
        reinterpret_cast<const BYTE*>(value.data.data()), static_cast<DWORD>(value.data.size()));
    if (status != ERROR_SUCCESS) {
        refuse(status);
    }
}

bool Key::removeValue(const Text& name) const
{
    const LSTATUS status = RegDeleteValueW(m_key.get(), Argument(name));
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
        refuse(status);
    }
    return status == ERROR_SUCCESS;
}

void Key::removeKey(const Text& name) const
{
    const LSTATUS status = RegDeleteTreeW(m_key.get(), Argument(name));
    if (status != ERROR_SUCCESS) {
        refuseAt(status, joined(m_path, name));
    }
}

std::optional<Trouble> registryTrouble()
{
    const std::pair<HKEY, const char*> roots[] = {{HKEY_CURRENT_USER, userRoot},
                                                  {HKEY_LOCAL_MACHINE, "HKEY_LOCAL_MACHINE"}};
    for (const auto& [root, name] : roots) {
        HKEY key = nullptr;
        const LSTATUS status = RegOpenKeyExW(root, L"Software", 0, KEY_READ, &key);
        if (status == ERROR_SUCCESS) {
            RegCloseKey(key);
        } else if (status != ERROR_FILE_NOT_FOUND) {
            return trouble(status, name);
        }
    }
    return std::nullopt;
}

bool machineValueExists(const Text& key, const wchar_t* name)
{
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, Argument(key), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
        return false;
    }
    const LSTATUS status = RegQueryValueExW(opened, name, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(opened);
    return status == ERROR_SUCCESS;
}
