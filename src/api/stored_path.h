// Paths that are stored as settings.
#pragma once

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

/// Copies a stored string into buffer, which holds 1024 characters, and sets length. Copies the empty string
/// if the stored string has more than 1022 characters or the value is not a string. Returns false if getValue
/// fails.
bool copyStoredText(TarvoConfig::Path path, const wchar_t* valuePath, wchar_t* buffer, unsigned long& length);

} // namespace uinfo
