// The INI files beside the executable, read afresh on each call.
#pragma once

#include "platform/text.h"

namespace uinfo {

enum class IniResult
{
    found,
    missing, ///< no readable file, no such entry, or an empty one; of a number also a negative one
    badPath, ///< the program folder is unknown, or the path has 1023 characters or more
};

/// The path of a file in the program folder. False leaves what came of it.
bool iniFilePath(const wchar_t* fileName, BoundedText& path);

/// Reads at most capacity - 2 characters; out is untouched where there is no readable file.
IniResult readIniText(const wchar_t* section, const wchar_t* key, wchar_t* out, unsigned long capacity,
                      const wchar_t* fileName);

/// A missing entry gives -1, a negative one its value; out is untouched where there is no readable file.
IniResult readIniNumber(const wchar_t* section, const wchar_t* key, long& out, const wchar_t* fileName);

} // namespace uinfo
