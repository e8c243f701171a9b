// Paths of this process's program: its folder, files beside it, and its language resource folders.
#pragma once

#include "platform/text.h"

#include <windows.h>

namespace uinfo {

/// Returns the program folder with its trailing backslash, cached once it could be read; empty until then.
/// Leaves the thread's last error as it was.
const wchar_t* programFolder();

/// Joins the program folder and a name in the first size characters of buffer and returns the length. Returns
/// 0 if the result would leave fewer than two characters unused; buffer may then hold part of a path.
unsigned long resourceFolder(const wchar_t* name, wchar_t* buffer, unsigned long size);

/// Appends the path of a file or folder beside the executable, whose path is read on each call. False if that
/// fails or the result does not fit.
bool programFilePath(const wchar_t* name, BoundedText& path);

/// Composes the path of a file in a resource folder; false if it does not fit.
bool resourceFilePath(const wchar_t* folderName, const wchar_t* fileName, PathBuffer& path);

/// Calls load with the path of a file in a resource folder and, if that returns null, with its bare name.
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
