// Reads the INI files in a program folder. Nothing is cached.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

// Results: eOk; eNotFound for an unreadable file, a missing or empty entry, or a negative number;
// eInvalidInput for an empty program folder or a path of more than 1022 characters.

/// Builds the path of a file in programFolder, which must end with a separator. Returns false if the folder
/// is empty or the path is too long; on failure, `path` may contain the folder.
bool iniFilePath(const wchar_t* programFolder, const wchar_t* fileName, BoundedText& path);

/// Reads at most capacity - 2 characters. If the file cannot be read, out is unchanged.
TarvoConfig::Error readIniText(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key,
                               wchar_t* out, unsigned long capacity, const wchar_t* fileName);

/// Stores the number in out, or -1 if the entry is missing. If the file cannot be read, out is unchanged.
TarvoConfig::Error readIniNumber(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key,
                                 long& out, const wchar_t* fileName);

/// Builds the command name prefix "S{MajorVer}{ProductId}_". Returns false unless product.ini contains both
/// numbers.
bool readCommandPrefix(const wchar_t* programFolder, BoundedText& prefix);

} // namespace uinfo
