#include "platform/executable.h"

#include <windows.h>

#include <algorithm>

namespace uinfo {

bool executablePath(wchar_t* out, unsigned long size)
{
    constexpr unsigned long longestPath = 32768;
    SetLastError(ERROR_SUCCESS);
    const DWORD written =
        GetModuleFileNameW(GetModuleHandleW(nullptr), out, static_cast<DWORD>(std::min(size, longestPath)));
    return written != 0 && GetLastError() != ERROR_INSUFFICIENT_BUFFER;
}

bool executableFolder(BoundedText& out, unsigned long size)
{
    if (!executablePath(out.data(), size)) {
        out.cut(0);
        return false;
    }
    out.cut(folderLength(out.text()));
    return true;
}

bool executableFolderOrCut(BoundedText& out, unsigned long size)
{
    const DWORD errorBefore = GetLastError();
    const DWORD written = GetModuleFileNameW(GetModuleHandleW(nullptr), out.data(), static_cast<DWORD>(size));
    SetLastError(errorBefore); // some systems clear the last error on success
    if (written == 0) {
        return false;
    }
    out.cut(size); // some systems do not terminate a truncated path
    out.measure();
    out.cut(folderLength(out.text()));
    return true;
}

} // namespace uinfo
