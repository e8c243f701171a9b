// The registry calls on keys.
#include "registry/calls.h"

using namespace winhost;
using namespace winhost::registry;

namespace {

/// A predefined key opened on itself is itself.
LSTATUS giveHandle(HKEY parent, NodeId from, NodeId found, REGSAM access, HKEY& result)
{
    if (found == from && isPredefined(parent)) {
        result = parent;
        return ERROR_SUCCESS;
    }
    return openHandle(found, access, result);
}

} // namespace

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, PHKEY result)
{
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    *result = nullptr;
    return onKey(key, 0, [&](NodeId node) {
        NodeId found = 0;
        const LSTATUS status = findPath(node, nameOf(subKey), found);
        return status != ERROR_SUCCESS ? status : giveHandle(key, node, found, access, *result);
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
            status = giveHandle(key, node, found, access, *result);
        }
        if (status == ERROR_SUCCESS) {
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
        Measure content;
        LSTATUS status = findPath(node, path, found);
        if (status == ERROR_SUCCESS && path.empty()) {
            status = read([&] { return measure(node, content); });
        }
        if (status == ERROR_SUCCESS && content.values != 0) {
            NodeId writable = 0;
            status = resolve(key, KEY_SET_VALUE, writable);
        }
        if (status != ERROR_SUCCESS) {
            return status;
        }
        return change([&] {
            const LSTATUS emptied = deleteContent(found);
            return emptied != ERROR_SUCCESS || path.empty() ? emptied : deleteKey(found);
        });
    });
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                      LPWSTR keyClass, LPDWORD classLength, FILETIME* lastWrite)
{
    if (name == nullptr || nameLength == nullptr || reserved != nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    return onKey(key, KEY_ENUMERATE_SUB_KEYS, [&](NodeId node) {
        return lookUp(Question::at(Question::eSubKeyAt, node, index), [&](const Answer& subKey) -> LSTATUS {
            if (subKey.name.size() >= *nameLength || !giveNoClass(keyClass, classLength)) {
                return ERROR_MORE_DATA;
            }
            giveText(subKey.name, name, nameLength);
            giveNoTime(lastWrite);
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
        Measure content;
        const LSTATUS status = read([&] { return measure(node, content); });
        if (status != ERROR_SUCCESS) {
            return status;
        }
        give(subKeys, content.subKeys);
        give(maxSubKeyLength, content.longestSubKey);
        give(maxClassLength, 0);
        give(values, content.values);
        give(maxValueNameLength, content.longestValueName);
        give(maxValueLength, content.longestData);
        give(securityDescriptorSize, 0);
        giveNoTime(lastWrite);
        giveNoClass(keyClass, classLength);
        return status;
    });
}
