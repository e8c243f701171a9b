// The INI files of a program's folder, read afresh on each call.
#pragma once

#include "platform/text.h"

namespace uinfo {

enum class IniResult
{
    found,
    missing, ///< no readable file, no such entry, or an empty one; of a number also a negative one
    badPath, ///< the program folder is unknown, or the path has 1023 characters or more
};

/// Composes the path of a file in a program folder, which ends with a separator. On failure the folder may be
/// left.
bool iniFilePath(const wchar_t* programFolder, const wchar_t* fileName, BoundedText& path);

/// Reads at most capacity - 2 characters; out is untouched if there is no readable file.
IniResult readIniText(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key, wchar_t* out,
                      unsigned long capacity, const wchar_t* fileName);

/// A missing entry reads as -1, a negative one as its value; out is untouched if there is no readable file.
IniResult readIniNumber(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key, long& out,
                        const wchar_t* fileName);

/// Reads the prefix of architecture commands; false unless product.ini has both of its numbers.
bool readCommandPrefix(const wchar_t* programFolder, BoundedText& prefix);

} // namespace uinfo
