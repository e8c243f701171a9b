// Stands for src/platform/executable.cpp in this program: src/program asks where the executable is, and gets
// an answer that the user chose. So it is start-up's own code that tells about another application's folder.
#include "model/program.h"

#include "platform/executable.h"

#include <windows.h>

namespace {

Text chosenFolder; // empty: this process's own

bool givePath(wchar_t* out, unsigned long size)
{
    if (chosenFolder.empty()) {
        SetLastError(ERROR_SUCCESS);
        return GetModuleFileNameW(GetModuleHandleW(nullptr), out, static_cast<DWORD>(size)) != 0 &&
               GetLastError() != ERROR_INSUFFICIENT_BUFFER;
    }
    uinfo::BoundedText path(out, size);
    return path.append(rkuinfo::Argument(chosenFolder)) && path.append(L"program");
}

} // namespace

void lookAt(const Text& folder)
{
    chosenFolder = folder;
}

namespace uinfo {

bool executablePath(wchar_t* out, unsigned long size)
{
    return givePath(out, size);
}

bool executableFolder(BoundedText& out, unsigned long size)
{
    const bool isGiven = givePath(out.data(), size);
    out.measure();
    out.cut(isGiven ? folderLength(out.text()) : 0);
    return isGiven;
}

bool executableFolderOrCut(BoundedText& out, unsigned long size)
{
    return executableFolder(out, size);
}

} // namespace uinfo
