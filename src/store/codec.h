// Typed values to and from registry values.
#pragma once

#include <RkUInfo/TarvoConfig.h>

#include <windows.h>

namespace uinfo {

/// Reads a value of an open key (query rights; null or empty: the default value). The stored type decides
/// what value becomes; on failure it keeps what it held.
TarvoConfig::Error readValueFromKey(HKEY key, const wchar_t* valueName, VelaVariant& value);

/// Writes a value of an open key (set-value rights). An eNull, an unknown type and an empty eBinary write
/// nothing and give eOk.
TarvoConfig::Error writeValueToKey(HKEY key, const wchar_t* valueName, const VelaVariant& value);

} // namespace uinfo
