#include "platform/files.h"

#include <io.h>
#include <shlwapi.h>
#include <windows.h>

namespace uinfo {

bool joinPath(BoundedText& folder, const wchar_t* name, std::size_t longest)
{
    const std::size_t room = std::min(folder.capacity() - 1, longest);
    if (folder.length() + 1 + length(name) > room || PathAppendW(folder.data(), name) == FALSE) {
        return false;
    }
    folder.measure();
    return true;
}

bool isReadable(const wchar_t* path)
{
    constexpr int readAccess = 4;
    return _waccess(path, readAccess) == 0;
}

bool hasMatch(const wchar_t* pattern)
{
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(pattern, &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    return true;
}

} // namespace uinfo
