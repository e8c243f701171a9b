// Paths that are stored as settings.
#pragma once

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

/// Copies a stored text of at most 1022 characters into buffer (1024 characters) and gives its length, 0 with
/// an empty buffer for a longer one and for a value that is not a text. False when there is no such value.
bool copyStoredText(TarvoConfig::Path path, const wchar_t* valuePath, wchar_t* buffer, unsigned long& length);

} // namespace uinfo
