// Paths of the running program: its folder, the files in it and its language resource folders.
#pragma once

#include "platform/text.h"

#include <windows.h>

namespace uinfo {

/// Returns the program folder with its trailing backslash, cached after the first success; empty until then.
/// Preserves the thread's last error.
const wchar_t* programFolder();

/// Writes into buffer the path of a folder next to the executable, and returns the path's length. buffer
/// holds size characters. Returns 0 on failure, for example if the path would be longer than size - 3
/// characters; buffer may then contain part of a path.
unsigned long resourceFolder(const wchar_t* name, wchar_t* buffer, unsigned long size);

/// Appends to `path` the full path of a file or folder next to the executable. Does not cache the
/// executable's path. Returns false if the executable's path cannot be read or the result does not fit.
bool programFilePath(const wchar_t* name, BoundedText& path);

/// Builds the path of a file in a resource folder. Returns false if a name is empty, the executable's path
/// cannot be read, or the result does not fit.
bool resourceFilePath(const wchar_t* folderName, const wchar_t* fileName, PathBuffer& path);

/// Calls load(path) for a file in a resource folder and, if the result is null, load(fileName). Returns null
/// if resourceFilePath fails.
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
