// The registry calls on keys.
#include "registry/cache.h"
#include "registry/calls.h"

#include <mutex>

using namespace winhost;
using namespace winhost::registry;

namespace {

/// A predefined key opened on itself is itself.
LSTATUS giveHandle(HKEY parent, const OpenKey& from, NodeId found, REGSAM access, HKEY& result)
{
    if (found == from.node && isPredefined(parent)) {
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
    return readKey(key, 0, [&](const ReadTransaction& in, const OpenKey& opened) {
        NodeId found = 0;
        const LSTATUS status = findPathCached(in, opened.node, nameOf(subKey), found);
        return status != ERROR_SUCCESS ? status : giveHandle(key, opened, found, access, *result);
    });
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass, DWORD, REGSAM access,
                        const SECURITY_ATTRIBUTES*, PHKEY result, LPDWORD disposition)
{
    if (result == nullptr || reserved != 0) {
        return ERROR_INVALID_PARAMETER;
    }
    *result = nullptr;
    const TextView path = nameOf(subKey);
    const TextView givenClass = nameOf(keyClass).substr(0, longestClass);
    OpenKey from;
    NodeId found = 0;
    bool created = false;
    LSTATUS status = readKey(key, 0, [&](const ReadTransaction& in, const OpenKey& opened) {
        from = opened;
        return findPathCached(in, opened.node, path, found);
    });
    if (status == ERROR_FILE_NOT_FOUND || (status == ERROR_SUCCESS && !givenClass.empty())) {
        status = changeKey(key, 0, [&](const Transaction& in, const OpenKey& opened) {
            return createPath(in, opened.node, path, givenClass, found, created);
        });
    }
    if (status == ERROR_SUCCESS) {
        status = giveHandle(key, from, found, access, *result);
    }
    if (status == ERROR_SUCCESS) {
        give(disposition, created ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY);
    }
    return status;
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
    return changeKey(key, 0, [&](const Transaction& in, const OpenKey& opened) {
        NodeId found = 0;
        const LSTATUS status = findPath(in, opened.node, nameOf(subKey), found);
        return status != ERROR_SUCCESS ? status : deleteKey(in, found);
    });
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subKey)
{
    const TextView path = nameOf(subKey);
    if (!path.empty()) {
        return changeKey(key, 0, [&](const Transaction& in, const OpenKey& opened) {
            NodeId found = 0;
            LSTATUS status = findPath(in, opened.node, path, found);
            if (status == ERROR_SUCCESS) {
                status = deleteContent(in, found);
            }
            return status != ERROR_SUCCESS ? status : deleteKey(in, found);
        });
    }
    return changeKey(key, KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE,
                     [&](const Transaction& in, const OpenKey& opened) {
                         Node node;
                         LSTATUS status = readNode(in, opened.node, node);
                         if (status == ERROR_SUCCESS && node.values != 0) {
                             OpenKey writable;
                             status = resolve(key, KEY_SET_VALUE, writable);
                         }
                         return status != ERROR_SUCCESS ? status : deleteContent(in, opened.node);
                     });
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved,
                      LPWSTR keyClass, LPDWORD classLength, FILETIME* lastWrite)
{
    if (name == nullptr || nameLength == nullptr || reserved != nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    return readKey(key, KEY_ENUMERATE_SUB_KEYS, [&](const ReadTransaction& in, const OpenKey& opened) {
        const std::lock_guard<std::mutex> lock(opened.positions->mutex);
        Entry link;
        if (const LSTATUS status =
                entryAtCached(in, List::eSubKeys, opened.node, index, opened.positions->subKeys, link)) {
            return status;
        }
        if (lastWrite != nullptr) {
            Node node;
            if (const LSTATUS status = readNode(in.get(), link.child(), node)) {
                return status;
            }
            giveTime(lastWrite, node.lastWrite);
        }
        const TextView givenClass = link.keyClass();
        if (link.name.size() >= *nameLength) {
            return ERROR_MORE_DATA;
        }
        if (classLength != nullptr) {
            if (keyClass == nullptr) {
                give(classLength, givenClass.size());
            } else if (!giveText(givenClass, keyClass, classLength)) {
                return ERROR_MORE_DATA;
            }
        }
        giveText(link.name, name, nameLength);
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
    return readKey(key, KEY_QUERY_VALUE, [&](const ReadTransaction& in, const OpenKey& opened) {
        Node node;
        Longest longest;
        TextView givenClass;
        LSTATUS status = readNode(in.get(), opened.node, node);
        if (status == ERROR_SUCCESS && (maxSubKeyLength != nullptr || maxClassLength != nullptr)) {
            status = measureSubKeys(in.get(), opened.node, longest);
        }
        if (status == ERROR_SUCCESS && (maxValueNameLength != nullptr || maxValueLength != nullptr)) {
            status = measureValues(in.get(), opened.node, longest);
        }
        if (status == ERROR_SUCCESS && classLength != nullptr) {
            status = readClass(in.get(), opened.node, givenClass);
        }
        if (status != ERROR_SUCCESS) {
            return status;
        }
        give(subKeys, node.subKeys);
        give(maxSubKeyLength, longest.subKeyName);
        give(maxClassLength, longest.keyClass);
        give(values, node.values);
        give(maxValueNameLength, longest.valueName);
        give(maxValueLength, longest.valueData);
        give(securityDescriptorSize, 0);
        giveTime(lastWrite, node.lastWrite);
        // No room at all asks for the length only.
        if (keyClass != nullptr && *classLength != 0 && !giveText(givenClass, keyClass, classLength)) {
            status = ERROR_INSUFFICIENT_BUFFER;
        }
        give(classLength, givenClass.size());
        return status;
    });
}
