// Joins paths and checks whether files exist.
#pragma once

#include "platform/text.h"

namespace uinfo {

/// Appends a name with PathAppendW. Returns false if the result would have more than longest characters or
/// exceed MAX_PATH.
[[nodiscard]] bool joinPath(BoundedText& folder, const wchar_t* name, std::size_t longest = anyLength);

/// Returns whether a file or folder exists and can be read.
bool isReadable(const wchar_t* path);

/// Returns whether a file matches a pattern.
bool hasMatch(const wchar_t* pattern);

} // namespace uinfo
