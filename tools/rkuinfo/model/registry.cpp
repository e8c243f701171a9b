#include "model/registry.h"

#include "model/system.h"

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
    {ERROR_ACCESS_DENIED, "access is denied", "give the user access to it"},
    {ERROR_NOT_ENOUGH_MEMORY, "out of memory", "close other programs"},
    {ERROR_INVALID_PARAMETER, "the name is not allowed", "choose another name"},
    {ERROR_DISK_FULL, "the disk is full", "free space on it"},
    {ERROR_LOCK_FAILED, "locked by another process", "close that process, or try again"},
    {ERROR_FILE_TOO_LARGE, "its file may not grow further", "raise the limit for the size of a file"},
    {ERROR_BADDB, "the registry is of a newer version of RkUInfo, or not a registry",
     "use the rkuinfo of that version"},
    {ERROR_CANTOPEN, "it cannot be opened", "check its folder and the permissions of it"},
    {ERROR_CANTWRITE, "it cannot be written", "check the free space and the permissions of its folder"},
    {ERROR_REGISTRY_CORRUPT, "the registry is damaged", "save what can be read with export --salvage"},
    {ERROR_REGISTRY_IO_FAILED, "the registry cannot be read or written", "check the disk"},
    {ERROR_KEY_DELETED, "another process has removed it", "try again"},
    {ERROR_NO_SYSTEM_RESOURCES, "the system is short of resources", "close other programs"},
    {ERROR_TOO_MANY_OPEN_FILES, "the process has too many files open", "close other programs"},
};

/// Throws for a status other than success, with what it means.
void require(LSTATUS status, const Text& path)
{
    if (status != ERROR_SUCCESS) {
        const Trouble found = trouble(status, userRoot + ('\\' + utf8(path)));
        throw Failure(found.problem + (found.remedy.empty() ? "" : "; " + found.remedy));
    }
}

} // namespace

Trouble trouble(LSTATUS status, const std::string& subject)
{
    const auto* const found = std::ranges::find(reasons, status, &Reason::status);
    const bool isKnown = found != std::end(reasons);
    return {subject + ": " + (isKnown ? std::string(found->words) + ", " : "") + "error " +
                std::to_string(status) + registryPlace(),
            isKnown ? found->remedy : ""};
}

std::optional<Key> Key::open(HKEY parent, const Text& name, unsigned long access, Text path)
{
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(parent, Argument(name), 0, static_cast<REGSAM>(access), &key);
    if (status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND) {
        return std::nullopt;
    }
    require(status, path);
    return Key(key, std::move(path));
}

std::optional<Key> Key::find(const Text& path, unsigned long access)
{
    return open(HKEY_CURRENT_USER, path, access, path);
}

Key Key::make(const Text& path)
{
    HKEY key = nullptr;
    require(RegCreateKeyExW(HKEY_CURRENT_USER, Argument(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                            KEY_READ | KEY_WRITE, nullptr, &key, nullptr),
            path);
    return {key, path};
}

std::optional<Key> Key::below(const Text& name) const
{
    return open(m_key.get(), name, KEY_READ, joinedKey(m_path, name));
}

template <typename Call, typename Visit>
void Key::enumerate(Call call, std::size_t longest, Losses* losses, const Visit& visit) const
{
    constexpr std::size_t mostLosses = 1000; // of a store where nothing can be read
    std::vector<wchar_t> name(longest);      // with its terminator
    for (DWORD index = 0; losses == nullptr || losses->size() < mostLosses; ++index) {
        auto length = static_cast<DWORD>(longest);
        const LSTATUS status =
            call(m_key.get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return;
        }
        guard(losses, [&] {
            require(status, m_path);
            visit(rkuinfo::text(name.data()));
        });
    }
}

std::vector<Text> Key::keys(Losses* losses) const
{
    std::vector<Text> names;
    enumerate(RegEnumKeyExW, 257, losses, [&](const Text& name) { names.push_back(name); });
    return names;
}

std::vector<Value> Key::values(Losses* losses) const
{
    std::vector<Value> values;
    enumerate(RegEnumValueW, 16384, losses, [&](const Text& name) {
        if (std::optional<Value> found = value(name)) {
            values.push_back(std::move(*found));
        }
    });
    return values;
}

std::optional<Value> Key::value(const Text& name) const
{
    const Argument argument(name);
    Value value = {name, REG_NONE, {}};
    DWORD type = REG_NONE;
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(m_key.get(), argument, nullptr, &type, nullptr, &size);
    do { // until no other process changes its length in between
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
    require(status, joinedKey(m_path, name));
    value.data.resize(size);
    value.type = type;
    return value;
}

void Key::set(const Value& value) const
{
    require(RegSetValueExW(m_key.get(), Argument(value.name), 0, static_cast<DWORD>(value.type),
                           reinterpret_cast<const BYTE*>(value.data.data()),
                           static_cast<DWORD>(value.data.size())),
            joinedKey(m_path, value.name));
}

bool Key::removeValue(const Text& name) const
{
    const LSTATUS status = RegDeleteValueW(m_key.get(), Argument(name));
    require(status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status, joinedKey(m_path, name));
    return status == ERROR_SUCCESS;
}

void Key::removeKey(const Text& name) const
{
    require(RegDeleteTreeW(m_key.get(), Argument(name)), joinedKey(m_path, name));
}

std::optional<Trouble> registryTrouble()
{
    for (HKEY const root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        HKEY key = nullptr;
        const LSTATUS status = RegOpenKeyExW(root, L"Software", 0, KEY_READ, &key);
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
            Trouble found = trouble(status, root == HKEY_CURRENT_USER ? userRoot : "HKEY_LOCAL_MACHINE");
            if (status == ERROR_REGISTRY_CORRUPT) { // nothing can be read
                found.remedy = "put a backup in its place, or move it away: the next start creates a new one";
            }
            return found;
        }
        RegCloseKey(key);
    }
    return std::nullopt;
}
