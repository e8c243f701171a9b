// The INI files of a program's folder, read afresh on each call.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

// Results: eOk; eNotFound for a file that cannot be read, an entry that is missing or empty, and a negative
// number; eInvalidInput for a program folder that is not known, and for a path over 1022 characters.

/// Composes the path of a file in a program folder, which ends with a separator. On failure the folder may be
/// left.
bool iniFilePath(const wchar_t* programFolder, const wchar_t* fileName, BoundedText& path);

/// Reads at most capacity - 2 characters; out is untouched if there is no readable file.
TarvoConfig::Error readIniText(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key,
                               wchar_t* out, unsigned long capacity, const wchar_t* fileName);

/// A missing entry reads as -1, a negative one as its value; out is untouched if there is no readable file.
TarvoConfig::Error readIniNumber(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key,
                                 long& out, const wchar_t* fileName);

/// Reads the prefix of architecture commands; false unless product.ini has both of its numbers.
bool readCommandPrefix(const wchar_t* programFolder, BoundedText& prefix);

} // namespace uinfo
