// The registry calls on values.
#include "registry/cache.h"
#include "registry/calls.h"

#include <cstring>
#include <mutex>

using namespace winhost;
using namespace winhost::registry;

namespace {

bool isText(DWORD type)
{
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

/// Copies a value's data if it fits. A text that is not terminated gets a terminator where there is room for
/// one; the size does not count it.
LSTATUS giveData(const Entry& value, BYTE* data, DWORD* size)
{
    LSTATUS status = ERROR_SUCCESS;
    if (data != nullptr && value.size > *size) {
        status = ERROR_MORE_DATA;
    } else if (data != nullptr && value.size != 0) {
        std::memcpy(data, value.data, value.size);
        const bool isTerminated =
            value.size >= sizeof(wchar_t) && data[value.size - 2] == 0 && data[value.size - 1] == 0;
        if (isText(value.type) && !isTerminated && *size - value.size >= sizeof(wchar_t)) {
            std::memset(data + value.size, 0, sizeof(wchar_t));
        }
    }
    give(size, value.size);
    return status;
}

} // namespace

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD size)
{
    if (reserved != nullptr || (data != nullptr && size == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    if (data == nullptr) {
        give(size, 0); // also where there is no value
    }
    return readKey(key, KEY_QUERY_VALUE, [&](const ReadTransaction& in, const OpenKey& opened) {
        Entry value;
        if (const LSTATUS status = findValueCached(in, opened.node, nameOf(valueName), value)) {
            return status;
        }
        give(type, value.type);
        return giveData(value, data, size);
    });
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD, DWORD type, const BYTE* data, DWORD size)
{
    if (data == nullptr && size != 0) {
        return ERROR_NOACCESS;
    }
    return changeKey(key, KEY_SET_VALUE, [&](const Transaction& in, const OpenKey& opened) {
        return setValue(in, opened.node, nameOf(valueName), type, data, size);
    });
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR valueName)
{
    return changeKey(key, KEY_SET_VALUE, [&](const Transaction& in, const OpenKey& opened) {
        return deleteValue(in, opened.node, nameOf(valueName));
    });
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameLength, LPDWORD reserved, LPDWORD type,
                      LPBYTE data, LPDWORD size)
{
    if (name == nullptr || nameLength == nullptr || reserved != nullptr ||
        (data != nullptr && size == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    return readKey(key, KEY_QUERY_VALUE, [&](const ReadTransaction& in, const OpenKey& opened) {
        const std::lock_guard<std::mutex> lock(opened.positions->mutex);
        Entry value;
        if (const LSTATUS status =
                entryAtCached(in, List::eValues, opened.node, index, opened.positions->values, value)) {
            return status;
        }
        give(type, value.type);
        if (!giveText(value.name, name, nameLength)) {
            give(size, value.size);
            return ERROR_MORE_DATA;
        }
        return giveData(value, data, size);
    });
}
