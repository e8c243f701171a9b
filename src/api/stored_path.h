// Paths that are stored as settings.
#pragma once

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

/// Copies a stored string of at most 1022 characters into buffer, which holds 1024, and sets length to its
/// length. For a longer string and for a value of another type buffer is empty and length 0. False if there
/// is no such value.
bool copyStoredText(TarvoConfig::Path path, const wchar_t* valuePath, wchar_t* buffer, unsigned long& length);

} // namespace uinfo
