// Paths that are stored as settings.
#pragma once

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

/// Copies a stored string of at most 1022 characters into buffer, which holds 1024, and sets length. Writes
/// the empty string if the value is longer or not a string. Returns false if getValue fails.
bool copyStoredText(TarvoConfig::Path path, const wchar_t* valuePath, wchar_t* buffer, unsigned long& length);

} // namespace uinfo
