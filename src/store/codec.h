// Converts typed values to registry values and back.
#pragma once

#include <RkUInfo/TarvoConfig.h>

#include <windows.h>

namespace uinfo {

/// Reads a value; the key must be open with KEY_QUERY_VALUE. A null or empty name means the default value.
/// The stored type determines the type of `value`. On failure, `value` is unchanged.
TarvoConfig::Error readValueFromKey(HKEY key, const wchar_t* valueName, VelaVariant& value);

/// Writes a value; the key must be open with KEY_SET_VALUE. Writes nothing and returns eOk if value is eNull,
/// is an empty eBinary, or has an unknown type.
TarvoConfig::Error writeValueToKey(HKEY key, const wchar_t* valueName, const VelaVariant& value);

} // namespace uinfo
