// The registry functions.
#include "registry/memory.h"

#include <cstring>
#include <utility>

using namespace winhost;
using namespace winhost::registry;
using database::Transaction;

namespace {

/// Updates the cache to the version that a transaction reads. Call it before using the cache.
void follow(const Transaction& in)
{
    const std::uint64_t version = in.version();
    const std::lock_guard<std::mutex> lock(memory.mutex);
    memory.follow(version, Memory::eOthers);
}

/// Looks up a key or value in the cache or, if it is not cached, in the store. If it is found, calls
/// use(result) while `memory` is locked. Fails if the key was opened without a required access right.
template <typename Use>
LSTATUS lookUp(HKEY key, REGSAM needed, Lookup lookup, Use use)
{
    return outcome([&]() -> LSTATUS {
        std::unique_lock<std::mutex> lock(memory.mutex);
        lookup.node = memory.resolve(key, needed);
        const Result* result = memory.recall(key, lookup);
        Result found;
        std::optional<Previous> previous;
        if (result == nullptr) {
            lock.unlock();
            const Transaction in(false);
            follow(in);
            lock.lock();
            previous = memory.previous(key, lookup);
            lock.unlock();
            found = find(lookup, previous ? &*previous : nullptr);
            result = &found;
            lock.lock();
        }
        const LSTATUS status = result->status != ERROR_SUCCESS ? result->status : use(*result);
        memory.advance(key, lookup, *result, status, previous && previous->isOutdated);
        return status;
    });
}

LSTATUS findKey(HKEY key, REGSAM needed, TextView path, NodeId& found)
{
    return lookUp(key, needed, {Lookup::ePath, path}, [&](const Result& result) {
        found = result.node;
        return ERROR_SUCCESS;
    });
}

NodeId nodeOf(HKEY key, REGSAM needed)
{
    const std::lock_guard<std::mutex> lock(memory.mutex);
    return memory.resolve(key, needed);
}

/// Calls work(node) in a transaction. After the commit, calls then() while `memory` is locked. then() must
/// not throw; otherwise the committed change would be reported as failed.
template <typename Work, typename Then = decltype([] {})>
LSTATUS change(Memory::Change what, HKEY key, REGSAM needed, Work work, Then then = {})
{
    return outcome([&] {
        const NodeId node = nodeOf(key, needed);
        Transaction in(true);
        follow(in);
        work(node);
        const std::uint64_t version = in.commit();
        const std::lock_guard<std::mutex> lock(memory.mutex);
        memory.follow(version, what);
        then();
        return ERROR_SUCCESS;
    });
}

/// Stores a result unless the pointer to it is null.
template <typename Result, typename Value>
void give(Result* out, Value value)
{
    if (out != nullptr) {
        *out = static_cast<Result>(value);
    }
}

/// Copies a string with its terminator, and sets the length. Returns false and copies nothing if they do not
/// fit.
bool giveText(TextView text, wchar_t* out, DWORD* length)
{
    if (text.size() >= *length) {
        return false;
    }
    *length = static_cast<DWORD>(copyText(text, out, *length));
    return true;
}

/// Reports an empty class, because classes are not stored. Returns false if the buffer has no room for the
/// terminator.
bool giveNoClass(wchar_t* out, DWORD* length)
{
    const bool fits = out == nullptr || length == nullptr || giveText({}, out, length);
    give(length, 0);
    return fits;
}

/// Copies a value's data if it fits. Terminates an unterminated string if there is room; the size does not
/// include that terminator.
LSTATUS giveData(const Result& value, BYTE* data, DWORD* size)
{
    constexpr std::string_view terminator("\0", sizeof(wchar_t));
    LSTATUS status = ERROR_SUCCESS;
    if (data != nullptr && value.data.size() > *size) {
        status = ERROR_MORE_DATA;
    } else if (data != nullptr && !value.data.empty()) {
        value.data.copy(reinterpret_cast<char*>(data), value.data.size());
        const bool isText = value.type == REG_SZ || value.type == REG_EXPAND_SZ || value.type == REG_MULTI_SZ;
        if (isText && !value.data.ends_with(terminator) && *size - value.data.size() >= sizeof(wchar_t)) {
            std::memset(data + value.data.size(), 0, sizeof(wchar_t));
        }
    }
    give(size, value.data.size());
    return status;
}

} // namespace

// ---- Keys

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, PHKEY result)
{
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    *result = nullptr;
    return lookUp(key, 0, {Lookup::ePath, viewOf(subKey)}, [&](const Result& found) {
        *result = found.node == rootOf(key) ? key : memory.open(found.node, access);
        return ERROR_SUCCESS;
    });
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR, DWORD, REGSAM access,
                        const SECURITY_ATTRIBUTES*, PHKEY result, LPDWORD disposition)
{
    if (result == nullptr || reserved != 0) {
        return ERROR_INVALID_PARAMETER;
    }
    LSTATUS status = RegOpenKeyExW(key, subKey, 0, access, result);
    bool isNew = false;
    if (status == ERROR_FILE_NOT_FOUND) { // another process may have created the key in the meantime
        status = change(Memory::eKeys, key, 0, [&](NodeId node) {
            const NodeId created = createPath(node, viewOf(subKey), isNew);
            const std::lock_guard<std::mutex> lock(memory.mutex);
            *result = memory.open(created, access); // precedes the commit, because open() may fail
        });
    }
    if (status == ERROR_SUCCESS) {
        give(disposition, isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
    } else {
        RegCloseKey(std::exchange(*result, nullptr)); // still open if the commit failed
    }
    return status;
}

LSTATUS RegCloseKey(HKEY key)
{
    const std::lock_guard<std::mutex> lock(memory.mutex);
    return memory.close(key);
}

LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR subKey)
{
    if (subKey == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    NodeId found = 0;
    const LSTATUS status = findKey(key, 0, subKey, found);
    return status != ERROR_SUCCESS ? status
                                   : change(Memory::eKeys, key, 0, [&](NodeId) { deleteKey(found); });
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subKey)
{
    const TextView path = viewOf(subKey);
    NodeId found = 0;
    LSTATUS status = findKey(key, path.empty() ? KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE : 0, path, found);
    if (status == ERROR_SUCCESS && path.empty()) { // deleting values also needs KEY_SET_VALUE
        status = lookUp(key, 0, {Lookup::eValueAt},
                        [&](const Result&) { return memory.resolve(key, KEY_SET_VALUE), ERROR_SUCCESS; });
    }
    return status != ERROR_SUCCESS && status != ERROR_NO_MORE_ITEMS
               ? status
               : change(Memory::eKeys, key, 0, [&](NodeId) { deleteTree(found, !path.empty()); });
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                      LPWSTR keyClass, LPDWORD classLength, FILETIME* lastWrite)
{
    if (name == nullptr || nameLength == nullptr || reserved != nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    return lookUp(key, KEY_ENUMERATE_SUB_KEYS, {Lookup::eSubKeyAt, {}, index},
                  [&](const Result& subKey) -> LSTATUS {
                      if (subKey.name.size() >= *nameLength || !giveNoClass(keyClass, classLength)) {
                          return ERROR_MORE_DATA;
                      }
                      give(lastWrite, FILETIME());
                      giveText(subKey.name, name, nameLength);
                      return ERROR_SUCCESS;
                  });
}

LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classLength, LPDWORD, LPDWORD subKeys,
                         LPDWORD maxSubKeyLength, LPDWORD maxClassLength, LPDWORD values,
                         LPDWORD maxValueNameLength, LPDWORD maxValueLength, LPDWORD securityDescriptorSize,
                         FILETIME* lastWrite)
{
    if (keyClass != nullptr && classLength == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    return outcome([&] {
        const NodeId node = nodeOf(key, KEY_QUERY_VALUE);
        const Transaction in(false);
        const Measure found = measure(node);
        constexpr std::int64_t unit = sizeof(wchar_t);
        give(subKeys, found.subKeys);
        give(maxSubKeyLength, found.longestSubKey / unit);
        give(maxClassLength, 0);
        give(values, found.values);
        give(maxValueNameLength, found.longestValueName / unit);
        give(maxValueLength, found.longestData);
        give(securityDescriptorSize, 0);
        give(lastWrite, FILETIME());
        giveNoClass(keyClass, classLength);
        return ERROR_SUCCESS;
    });
}

// ---- Values

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD size)
{
    if (reserved != nullptr || (data != nullptr && size == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    if (data == nullptr) {
        give(size, 0); // if the value is missing, the size is 0
    }
    return lookUp(key, KEY_QUERY_VALUE, {Lookup::eValue, viewOf(valueName)}, [&](const Result& value) {
        give(type, value.type);
        return giveData(value, data, size);
    });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    if (data == nullptr && size != 0) {
        return ERROR_NOACCESS;
    }
    Lookup lookup{Lookup::eValue, viewOf(valueName)};
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    bool isThere = false;
    const LSTATUS status = lookUp(key, KEY_SET_VALUE, lookup, [&](const Result& value) {
        isThere = value.type == type && value.data == bytes;
        return ERROR_SUCCESS;
    });
    if (isThere || (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)) {
        return status;
    }
    if (lookup.text.size() > longestValueName) {
        return ERROR_INVALID_PARAMETER;
    }
    Result written;
    const auto set = [&](NodeId node) {
        lookup.node = node;
        written = setValue(node, lookup.text, type, bytes);
    };
    return change(Memory::eValues, key, KEY_SET_VALUE, set, [&] { memory.remember(lookup, written); });
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR valueName)
{
    const TextView name = viewOf(valueName);
    const LSTATUS status =
        lookUp(key, KEY_SET_VALUE, {Lookup::eValue, name}, [](const Result&) { return ERROR_SUCCESS; });
    return status != ERROR_SUCCESS
               ? status
               : change(Memory::eValues, key, KEY_SET_VALUE, [&](NodeId node) { deleteValue(node, name); });
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved, LPDWORD type,
                      LPBYTE data, LPDWORD size)
{
    if (name == nullptr || nameLength == nullptr || reserved != nullptr ||
        (data != nullptr && size == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    return lookUp(key, KEY_QUERY_VALUE, {Lookup::eValueAt, {}, index}, [&](const Result& value) -> LSTATUS {
        give(type, value.type);
        if (!giveText(value.name, name, nameLength)) {
            give(size, value.data.size());
            return ERROR_MORE_DATA;
        }
        return giveData(value, data, size);
    });
}
