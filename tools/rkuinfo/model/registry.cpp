#include "model/registry.h"

#include "model/system.h"
#include "platform/registry_key.h"

#include <algorithm>
#include <csignal>

namespace {

using rkuinfo::Argument;
using uinfo::RegistryKey;

struct Reason
{
    LSTATUS status;
    const char* words;
    const char* remedy;
};

constexpr Reason reasons[] = {
    {ERROR_ACCESS_DENIED, "access is denied", "give the user access to it"},
    {ERROR_DISK_FULL, "the disk is full", "free some space"},
    {ERROR_LOCK_FAILED, "locked by another process", "close that process, or try again"},
    {ERROR_FILE_TOO_LARGE, "its file cannot grow further", "raise the file size limit"},
    {ERROR_BADDB, "the file was written by a newer version of RkUInfo, or is not a registry",
     "use the rkuinfo of that version"},
    {ERROR_CANTOPEN, "it cannot be opened", "check its folder and permissions"},
    {ERROR_CANTWRITE, "it cannot be written", "check the free space and the permissions of its folder"},
    {ERROR_REGISTRY_CORRUPT, "the registry is damaged",
     "restore a backup; or run export --salvage, then move the damaged file away"},
    {ERROR_REGISTRY_IO_FAILED, "the registry cannot be read or written", "check the disk"},
    {ERROR_KEY_DELETED, "another process has removed it", "try again"},
};

std::string fullName(TextView path)
{
    return "HKEY_CURRENT_USER\\" + utf8(path);
}

/// Opens a key. The result is empty if the key does not exist.
RegistryKey open(const Text& path, REGSAM access)
{
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(HKEY_CURRENT_USER, Argument(path), 0, access, &key);
    if (status != ERROR_FILE_NOT_FOUND && status != ERROR_PATH_NOT_FOUND) {
        require(status, fullName(path));
    }
    return RegistryKey(key);
}

std::optional<Value> readValue(const RegistryKey& key, const Text& path, const Text& name)
{
    const Argument argument(name);
    Value value = {name, REG_NONE, {}};
    DWORD type = REG_NONE;
    DWORD size = 0;
    LSTATUS status =
        key ? RegQueryValueExW(key.get(), argument, nullptr, &type, nullptr, &size) : ERROR_FILE_NOT_FOUND;
    do { // another process may lengthen the data at any time
        value.data.resize(size);
        if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
            BYTE none = 0;
            status = RegQueryValueExW(key.get(), argument, nullptr, &type,
                                      size == 0 ? &none : reinterpret_cast<BYTE*>(value.data.data()), &size);
        }
    } while (status == ERROR_MORE_DATA);
    if (status == ERROR_FILE_NOT_FOUND) {
        return std::nullopt;
    }
    require(status, fullName(joinedKey(path, name)));
    value.data.resize(size);
    value.type = type;
    return value;
}

/// Calls visit() with the name of each sub-key if `call` is RegEnumKeyExW, or of each value if it is
/// RegEnumValueW.
template <typename Call, typename Visit>
void enumerate(const RegistryKey& key, const Text& path, Call call, Losses* losses, const Visit& visit)
{
    constexpr std::size_t mostLosses = 1000; // listing a damaged store could otherwise take forever
    wchar_t name[16384];                     // fits the longest value name and its terminator
    for (DWORD index = 0; losses == nullptr || losses->size() < mostLosses; ++index) {
        DWORD length = std::size(name);
        const LSTATUS status = call(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return;
        }
        guard(losses, [&] {
            require(status, fullName(path));
            visit(rkuinfo::text(name));
        });
    }
}

void readKey(Tree& tree, const Text& root, const Text& path, bool isDeep, Losses* losses)
{
    const Text whole = joinedKey(root, path);
    if (!isUsablePath(whole)) {
        throw Failure("keys are nested too deep for applications to read, in " +
                      utf8(joinedKey(root, path.substr(0, path.find(separator)))));
    }
    const RegistryKey key = open(whole, KEY_READ);
    if (!key) {
        return;
    }
    tree.try_emplace({path});
    enumerate(key, whole, RegEnumValueW, losses, [&](const Text& name) {
        if (std::optional<Value> value = readValue(key, whole, name)) {
            tree.insert_or_assign({path, name}, std::move(*value));
        }
    });
    showProgress("read", tree.size());
    std::vector<Text> below;
    enumerate(key, whole, RegEnumKeyExW, losses,
              [&](const Text& name) { below.push_back(joinedKey(path, name)); });
    for (const Text& each : below) {
        if (isDeep) {
            guard(losses, [&] { readKey(tree, root, each, isDeep, losses); });
        } else {
            tree.try_emplace({each});
        }
    }
}

volatile std::sig_atomic_t isInterrupted = 0;

/// Compares data as an application would: ignores bytes after a string's terminator, and treats missing bytes
/// of a number as zero.
bool sameData(const Value& a, const Value& b)
{
    return a.type == b.type && (a.data == b.data || (typeOf(a) != nullptr && typeOf(a) == typeOf(b) &&
                                                     dataText(a) == dataText(b)));
}

/// Adds a key and all keys above it.
void touch(Tree& tree, TextView path)
{
    while (tree.try_emplace({Text(path)}).second && !path.empty()) {
        path = parentKey(path);
    }
}

void eraseKey(Tree& tree, const Text& key)
{
    auto at = tree.lower_bound({key});
    while (at != tree.end() && equalIgnoringCase(TextView(at->first.key).substr(0, key.size()), key) &&
           (at->first.key.size() == key.size() || at->first.key[key.size()] == separator)) {
        at = tree.erase(at);
    }
}

/// Keeps the last key open, because consecutive changes often belong to the same key.
class Writer
{
public:
    explicit Writer(const Text& root) : m_root(root) {}

    /// Creates a key or stores a value; removes the key or value if `value` is null.
    void write(const Name& name, const Value* value)
    {
        const bool isKeyRemoval = name.isKey() && value == nullptr;
        const Text path = joinedKey(m_root, name.key);
        const Text opened(isKeyRemoval ? parentKey(path) : path);
        if (!m_key || m_path != opened) {
            m_key = value != nullptr ? create(opened) : open(opened, KEY_ALL_ACCESS);
            m_path = opened;
        }
        LSTATUS status = ERROR_SUCCESS;
        if (isKeyRemoval && m_key) {
            status = RegDeleteTreeW(m_key.get(), Argument(lastName(path)));
        } else if (!name.isKey() && value != nullptr) {
            status = RegSetValueExW(m_key.get(), Argument(*name.value), 0, static_cast<DWORD>(value->type),
                                    reinterpret_cast<const BYTE*>(value->data.data()),
                                    static_cast<DWORD>(value->data.size()));
        } else if (!name.isKey() && m_key) {
            status = RegDeleteValueW(m_key.get(), Argument(*name.value));
        }
        if (value != nullptr || status != ERROR_FILE_NOT_FOUND) { // another process may have removed it
            require(status, fullName(joinedKey(path, name.value.value_or(Text()))));
        }
    }

private:
    static RegistryKey create(const Text& path)
    {
        HKEY key = nullptr;
        require(RegCreateKeyExW(HKEY_CURRENT_USER, Argument(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                KEY_WRITE, nullptr, &key, nullptr),
                fullName(path));
        return RegistryKey(key);
    }

    const Text& m_root;
    Text m_path;
    RegistryKey m_key;
};

} // namespace

void require(LSTATUS status, const std::string& subject)
{
    if (status != ERROR_SUCCESS) {
        const auto* const found = std::ranges::find(reasons, status, &Reason::status);
        const bool isKnown = found != std::end(reasons);
        throw Failure(subject + ": " + (isKnown ? std::string(found->words) + ", " : "") + "error " +
                          std::to_string(status) + registryPlace(),
                      isKnown ? found->remedy : "");
    }
}

bool keyExists(const Text& path)
{
    return static_cast<bool>(open(path, KEY_READ));
}

std::optional<Value> readValue(const Text& path, const Text& name)
{
    return readValue(open(path, KEY_READ), path, name);
}

bool isUsablePath(TextView path)
{
    constexpr std::size_t longestPath = 1020;
    constexpr std::size_t longestName = 255;
    bool isUsable = path.size() <= longestPath;
    for (; isUsable && !path.empty(); path = parentKey(path)) {
        isUsable =
            lastName(path).size() <= longestName && !lastName(path).empty() && path.front() != separator;
    }
    return isUsable;
}

bool LessName::operator()(const Name& left, const Name& right) const
{
    for (TextView a = left.key, b = right.key; !a.empty() || !b.empty();) {
        const std::size_t endA = std::min(a.find(separator), a.size());
        const std::size_t endB = std::min(b.find(separator), b.size());
        if (const int order = compareIgnoringCase(a.substr(0, endA), b.substr(0, endB)); order != 0) {
            return order < 0;
        }
        a.remove_prefix(std::min(endA + 1, a.size()));
        b.remove_prefix(std::min(endB + 1, b.size()));
    }
    return !right.isKey() && (left.isKey() || compareIgnoringCase(*left.value, *right.value) < 0);
}

Tree readTree(const Text& path, bool isDeep, Losses* losses)
{
    Tree tree;
    readKey(tree, path, {}, isDeep, losses);
    finishProgress();
    return tree;
}

void edit(Tree& tree, const std::vector<Edit>& edits)
{
    for (const Edit& each : edits) {
        if (!each.isRemoval) {
            touch(tree, each.name.key);
            tree[each.name] = each.value;
        } else if (each.name.isKey()) {
            eraseKey(tree, each.name.key);
        } else {
            tree.erase(each.name);
        }
    }
}

std::vector<Change> compare(const Tree& before, const Tree& after)
{
    std::map<Name, std::pair<const Value*, const Value*>, LessName> both;
    for (const auto& [name, value] : after) {
        both[name].second = &value;
    }
    for (const auto& [name, value] : before) {
        both[name].first = &value;
    }
    std::vector<Change> found;
    for (const auto& [name, values] : both) {
        if (values.first == nullptr || values.second == nullptr || !sameData(*values.first, *values.second)) {
            found.push_back({name, values.first, values.second});
        }
    }
    return found;
}

void carryOut(const Text& root, const std::vector<Change>& changes)
{
    std::signal(SIGINT, [](int /*signal*/) { isInterrupted = 1; }); // Ctrl-C undoes all changes
    Writer writer(root);
    std::size_t done = 0;
    try {
        for (; done < changes.size(); ++done) {
            if (isInterrupted != 0) {
                throw Failure("interrupted");
            }
            writer.write(changes[done].name, changes[done].after);
            showProgress("wrote", done + 1);
        }
        finishProgress();
    } catch (const Failure& failure) {
        const std::string why = failure.what();
        try {
            for (; done > 0 && !hasTransactions(); --done) {
                writer.write(changes[done - 1].name, changes[done - 1].before);
            }
        } catch (const Failure& second) {
            throw Failure(why + "; some changes could not be undone: " + second.what());
        }
        throw Failure(why + "; nothing was changed");
    }
}
