// Where the program's own files are. "The program" is the process's executable.
#pragma once

#include "platform/text.h"

#include <windows.h>

namespace uinfo {

/// The program folder with its trailing backslash, read once; empty while it cannot be. Neither sets nor
/// clears the thread's last error.
const wchar_t* programFolder();

/// Joins the program folder and a name in the first size characters of buffer, and gives the length. 0 when
/// it does not fit with two characters to spare, and part of a path may be left.
unsigned long resourceFolder(const wchar_t* name, wchar_t* buffer, unsigned long size);

/// The path of a file or folder beside the executable, which is asked for on each call. False when it cannot
/// be known or does not fit.
bool programFilePath(const wchar_t* name, BoundedText& path);

/// The path of a file in a resource folder; false when it does not fit.
bool resourceFilePath(const wchar_t* folderName, const wchar_t* fileName, PathBuffer& path);

/// Runs load(path) on a file of a resource folder and, when that gives null, on its bare name.
template <typename Load>
HINSTANCE loadResourceLibrary(const wchar_t* folderName, const wchar_t* fileName, Load load)
{
    PathBuffer path;
    if (!resourceFilePath(folderName, fileName, path)) {
        return nullptr;
    }
    auto* const loaded = load(path.text());
    return loaded != nullptr ? loaded : load(fileName);
}

} // namespace uinfo
