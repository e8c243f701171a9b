// The registry calls on values.
#include "registry/calls.h"

#include <cstring>

using namespace winhost;
using namespace winhost::registry;

namespace {

constexpr char noUnit[sizeof(wchar_t)] = {};
constexpr std::string_view terminator(noUnit, sizeof noUnit);

bool isText(DWORD type)
{
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

/// Copies a value's data if it fits. A text that is not terminated gets a terminator where there is room for
/// one; the size does not count it.
LSTATUS giveData(const Answer& value, BYTE* data, DWORD* size)
{
    LSTATUS status = ERROR_SUCCESS;
    if (data != nullptr && value.data.size() > *size) {
        status = ERROR_MORE_DATA;
    } else if (data != nullptr && !value.data.empty()) {
        std::memcpy(data, value.data.data(), value.data.size());
        const bool isTerminated = value.data.ends_with(terminator);
        if (isText(value.type) && !isTerminated && *size - value.data.size() >= sizeof(wchar_t)) {
            std::memset(data + value.data.size(), 0, sizeof(wchar_t));
        }
    }
    give(size, value.data.size());
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
    return onKey(key, KEY_QUERY_VALUE, [&](NodeId node) {
        return lookUp(Question::value(node, nameOf(valueName)), [&](const Answer& value) {
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
        bool isThere = false;
        const LSTATUS status = lookUp(Question::value(node, name), [&](const Answer& value) {
            isThere = value.type == type && value.data == bytes;
            return ERROR_SUCCESS;
        });
        if (isThere || (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)) {
            return status;
        }
        return change([&] { return setValue(node, name, type, bytes); });
    });
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR valueName)
{
    return onKey(key, KEY_SET_VALUE, [&](NodeId node) {
        const TextView name = nameOf(valueName);
        const LSTATUS status =
            lookUp(Question::value(node, name), [](const Answer&) { return ERROR_SUCCESS; });
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
        return lookUp(Question::at(Question::eValueAt, node, index), [&](const Answer& value) -> LSTATUS {
            give(type, value.type);
            if (!giveText(value.name, name, nameLength)) {
                give(size, value.data.size());
                return ERROR_MORE_DATA;
            }
            return giveData(value, data, size);
        });
    });
}
