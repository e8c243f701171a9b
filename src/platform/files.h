// Joins paths and checks whether files exist.
#pragma once

#include "platform/text.h"

namespace uinfo {

/// Appends a name with PathAppendW. Returns false if the result would exceed `longest` characters, MAX_PATH
/// or the capacity of `folder`.
[[nodiscard]] bool joinPath(BoundedText& folder, const wchar_t* name, std::size_t longest = anyLength);

/// Returns whether a file or folder exists and can be read.
bool isReadable(const wchar_t* path);

/// Returns whether at least one file or folder matches a pattern.
bool hasMatch(const wchar_t* pattern);

} // namespace uinfo
