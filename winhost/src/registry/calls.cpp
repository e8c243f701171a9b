// The registry calls.
#include "registry/cache.h"
#include "registry/handles.h"

#include <cstring>
#include <new>

using namespace winhost;
using namespace winhost::registry;

namespace {

/// A terminated text as a name; a null one is empty.
TextView nameOf(const wchar_t* text)
{
    return text != nullptr ? TextView(text) : TextView();
}

/// Runs use(node) on a key that must have been opened with the rights.
template <typename Use>
LSTATUS onKey(HKEY key, REGSAM needed, Use use)
{
    NodeId node = 0;
    if (const LSTATUS status = resolve(key, needed, node)) {
        return status;
    }
    try {
        return use(node);
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

/// Runs use(answer) on what is remembered or in the store.
template <typename Use>
LSTATUS lookUp(const Question& question, Use use)
{
    LSTATUS status = ERROR_SUCCESS;
    const auto take = [&](const Answer& answer) {
        status = answer.status != ERROR_SUCCESS ? answer.status : use(answer);
    };
    if (!cache().recall(question, take)) {
        Answer found;
        {
            const Access in(Access::eReading);
            if (in.status() != ERROR_SUCCESS) {
                return in.status();
            }
            found = find(question);
        }
        take(found);
    }
    return status;
}

LSTATUS findPath(NodeId start, TextView path, NodeId& found)
{
    return lookUp({Question::ePath, start, path}, [&](const Answer& answer) {
        found = answer.node;
        return ERROR_SUCCESS;
    });
}

/// Changes the store in one transaction, which is kept if use() succeeds.
template <typename Use>
LSTATUS change(Use use)
{
    Access in(Access::eWriting);
    const LSTATUS status = in.status() != ERROR_SUCCESS ? in.status() : use();
    return status != ERROR_SUCCESS ? status : in.commit();
}

/// Fills an optional result.
template <typename Result, typename Value>
void give(Result* out, Value value)
{
    if (out != nullptr) {
        *out = static_cast<Result>(value);
    }
}

/// A predefined key opened on itself is itself.
HKEY handleOf(HKEY parent, NodeId from, NodeId found, REGSAM access)
{
    return found == from && isPredefined(parent) ? parent : openHandle(found, access);
}

/// Copies a text with its terminator if there is room for both, and gives its length then.
bool giveText(TextView text, wchar_t* out, DWORD* length)
{
    if (text.size() >= *length) {
        return false;
    }
    *length = static_cast<DWORD>(copyText(text, out, *length));
    return true;
}

/// Classes are not kept: each is empty. False where there is no room for the terminator.
bool giveNoClass(wchar_t* out, DWORD* length)
{
    const bool fits = out == nullptr || length == nullptr || giveText({}, out, length);
    give(length, 0);
    return fits;
}

/// Copies a value's data if it fits. A text that is not terminated gets a terminator where there is room for
/// one; the size does not count it.
LSTATUS giveData(const Answer& value, BYTE* data, DWORD* size)
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
    return onKey(key, 0, [&](NodeId node) {
        NodeId found = 0;
        const LSTATUS status = findPath(node, nameOf(subKey), found);
        *result = status == ERROR_SUCCESS ? handleOf(key, node, found, access) : nullptr;
        return status;
    });
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR, DWORD, REGSAM access,
                        const SECURITY_ATTRIBUTES*, PHKEY result, LPDWORD disposition)
{
    if (result == nullptr || reserved != 0) {
        return ERROR_INVALID_PARAMETER;
    }
    *result = nullptr;
    return onKey(key, 0, [&](NodeId node) {
        NodeId found = 0;
        bool created = false;
        LSTATUS status = findPath(node, nameOf(subKey), found);
        if (status == ERROR_FILE_NOT_FOUND) {
            status = change([&] { return createPath(node, nameOf(subKey), found, created); });
        }
        if (status == ERROR_SUCCESS) {
            *result = handleOf(key, node, found, access);
            give(disposition, created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
        }
        return status;
    });
}

LSTATUS RegCloseKey(HKEY key)
{
    return closeHandle(key);
}

LSTATUS RegDeleteKeyW(HKEY key, LPCWSTR subKey)
{
    if (subKey == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    return onKey(key, 0, [&](NodeId node) {
        NodeId found = 0;
        const LSTATUS status = findPath(node, subKey, found);
        return status != ERROR_SUCCESS ? status : change([&] { return deleteKey(found); });
    });
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subKey)
{
    const TextView path = nameOf(subKey);
    const REGSAM needed = path.empty() ? KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE : 0;
    return onKey(key, needed, [&](NodeId node) {
        NodeId found = 0;
        LSTATUS status = findPath(node, path, found);
        if (status == ERROR_SUCCESS && path.empty()) { // who has values needs the right to set them, too
            status = lookUp({Question::eValueAt, node}, [&](const Answer&) {
                NodeId writable = 0;
                return resolve(key, KEY_SET_VALUE, writable);
            });
        }
        const bool mayDelete = status == ERROR_SUCCESS || status == ERROR_NO_MORE_ITEMS;
        return mayDelete ? change([&] { return deleteTree(found, !path.empty()); }) : status;
    });
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                      LPWSTR keyClass, LPDWORD classLength, FILETIME* lastWrite)
{
    if (name == nullptr || nameLength == nullptr || reserved != nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    return onKey(key, KEY_ENUMERATE_SUB_KEYS, [&](NodeId node) {
        return lookUp({Question::eSubKeyAt, node, {}, index}, [&](const Answer& subKey) -> LSTATUS {
            if (subKey.name.size() >= *nameLength || !giveNoClass(keyClass, classLength)) {
                return ERROR_MORE_DATA;
            }
            giveText(subKey.name, name, nameLength);
            give(lastWrite, FILETIME());
            return ERROR_SUCCESS;
        });
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
    return onKey(key, KEY_QUERY_VALUE, [&](NodeId node) {
        Measure ofSubKeys;
        Measure ofValues;
        const Access in(Access::eReading);
        const LSTATUS status =
            in.status() != ERROR_SUCCESS ? in.status() : measure(node, ofSubKeys, ofValues);
        if (status == ERROR_SUCCESS) {
            constexpr std::int64_t unit = sizeof(wchar_t);
            give(subKeys, ofSubKeys.count);
            give(maxSubKeyLength, ofSubKeys.longestName / unit);
            give(maxClassLength, 0);
            give(values, ofValues.count);
            give(maxValueNameLength, ofValues.longestName / unit);
            give(maxValueLength, ofValues.longestData);
            give(securityDescriptorSize, 0);
            give(lastWrite, FILETIME());
            giveNoClass(keyClass, classLength);
        }
        return status;
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
        give(size, 0); // also where there is no value
    }
    return onKey(key, KEY_QUERY_VALUE, [&](NodeId node) {
        return lookUp({Question::eValue, node, nameOf(valueName)}, [&](const Answer& value) {
            give(type, value.type);
            return giveData(value, data, size);
        });
    });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    if (data == nullptr && size != 0) {
        return ERROR_NOACCESS;
    }
    const TextView name = nameOf(valueName);
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    return onKey(key, KEY_SET_VALUE, [&](NodeId node) -> LSTATUS {
        if (name.size() > longestValueName) {
            return ERROR_INVALID_PARAMETER;
        }
        const Question question{Question::eValue, node, name};
        bool isThere = false;
        LSTATUS status = lookUp(question, [&](const Answer& value) {
            isThere = value.type == type && value.data == bytes;
            return ERROR_SUCCESS;
        });
        if (isThere || (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)) {
            return status;
        }
        Access in(Access::eWriting);
        const std::uint64_t shape = cache().tagOf(Question::ePath);
        Answer written;
        status = in.status() != ERROR_SUCCESS ? in.status() : setValue(node, name, type, bytes, written);
        status = status != ERROR_SUCCESS ? status : in.commit();
        if (shape != 0 && status == ERROR_SUCCESS) { // no key came or went
            cache().learnShape(in.versionBehind(), shape);
        }
        cache().remember(question, in.versionBehind(), written);
        return status;
    });
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR valueName)
{
    return onKey(key, KEY_SET_VALUE, [&](NodeId node) {
        const TextView name = nameOf(valueName);
        const Question question{Question::eValue, node, name};
        const LSTATUS status = lookUp(question, [](const Answer&) { return ERROR_SUCCESS; });
        return status != ERROR_SUCCESS ? status : change([&] { return deleteValue(node, name); });
    });
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved, LPDWORD type,
                      LPBYTE data, LPDWORD size)
{
    if (name == nullptr || nameLength == nullptr || reserved != nullptr ||
        (data != nullptr && size == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    return onKey(key, KEY_QUERY_VALUE, [&](NodeId node) {
        return lookUp({Question::eValueAt, node, {}, index}, [&](const Answer& value) -> LSTATUS {
            give(type, value.type);
            if (!giveText(value.name, name, nameLength)) {
                give(size, value.data.size());
                return ERROR_MORE_DATA;
            }
            return giveData(value, data, size);
        });
    });
}
