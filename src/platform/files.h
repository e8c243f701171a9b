// Paths and files as the system sees them.
#pragma once

#include "platform/text.h"

namespace uinfo {

/// Appends a name as PathAppendW does, if the result has at most longest characters and fits MAX_PATH.
[[nodiscard]] bool joinPath(BoundedText& folder, const wchar_t* name, std::size_t longest = anyLength);

/// Returns whether a file or folder exists and can be read.
bool isReadable(const wchar_t* path);

/// Returns whether a file matches a pattern.
bool hasMatch(const wchar_t* pattern);

} // namespace uinfo
