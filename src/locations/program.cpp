// The program folder, language resource folders and libraries, and the help viewer.
#include "platform/executable.h"
#include "platform/text.h"
#include "platform/text_cache.h"

#include <RkUInfo.h>

#include <shlwapi.h>
#include <windows.h>

#include <algorithm>
#include <iterator>

namespace {

using uinfo::isEmpty;
using uinfo::pathCapacity;

constexpr DWORD modulePathSize = 1023;
constexpr wchar_t helpViewer[] = L"RKHelp.exe";

wchar_t programFolder[pathCapacity];

bool readProgramFolder(uinfo::BoundedText& folder)
{
    // A path that was cut at the capacity is taken like any other, and the thread's last error left alone.
    if (GetModuleFileNameW(GetModuleHandleW(nullptr), folder.data(), modulePathSize) == 0) {
        return false;
    }
    folder.measure(); // some systems leave a cut path without a terminator
    folder.cut(uinfo::folderLength(folder.text()));
    return true;
}

/// The path of a file in the current language's folder; false when it does not fit.
bool resourceFilePath(const wchar_t* fileName, uinfo::PathBuffer& path)
{
    if (isEmpty(fileName)) {
        return false;
    }
    const unsigned long folderLength = GetResourceDllPath(path.data(), modulePathSize);
    return folderLength != 0 && uinfo::length(fileName) + folderLength + 2 < modulePathSize &&
           PathAppendW(path.data(), fileName) != FALSE;
}

} // namespace

unsigned long GetProgramPath(wchar_t* buffer, unsigned long size)
{
    if (buffer == nullptr || size == 0) {
        return 0;
    }
    const wchar_t* const folder = uinfo::cachedText(programFolder, readProgramFolder);
    const std::size_t folderLength = uinfo::length(folder);
    if (folderLength == 0 || folderLength >= size) {
        return 0;
    }
    std::copy_n(folder, folderLength + 1, buffer);
    return static_cast<unsigned long>(folderLength);
}

const wchar_t* GetCurrentLanguageShortName()
{
    return velaConfig()->language().shortName();
}

const wchar_t* GetCurrentLanguageGlobalName()
{
    return velaConfig()->language().globalName();
}

const wchar_t* GetCurrentLanguageLocalName()
{
    return velaConfig()->language().localName();
}

unsigned long GetResourceDllPath(wchar_t* buffer, unsigned long size)
{
    return GetResourceDllPath(GetCurrentLanguageShortName(), buffer, size);
}

unsigned long GetResourceDllPath(const wchar_t* folderName, wchar_t* buffer, unsigned long size)
{
    if (isEmpty(folderName) || buffer == nullptr || size == 0 || !uinfo::executablePath(buffer, size)) {
        return 0;
    }
    PathRemoveFileSpecW(buffer);
    constexpr std::size_t spare = 3; // the separator, the terminator and one that no path needs
    if (uinfo::length(buffer) + uinfo::length(folderName) + spare >= size ||
        PathAppendW(buffer, folderName) == FALSE) {
        return 0;
    }
    return static_cast<unsigned long>(uinfo::length(buffer));
}

HINSTANCE LoadResourceDll(const wchar_t* fileName)
{
    uinfo::PathBuffer path;
    if (!resourceFilePath(fileName, path)) {
        return nullptr;
    }
    auto* const loaded = LoadLibraryW(path.text());
    return loaded != nullptr ? loaded : LoadLibraryW(fileName);
}

HINSTANCE LoadResourceDllEx(const wchar_t* fileName, void* file, unsigned long flags)
{
    uinfo::PathBuffer path;
    if (!resourceFilePath(fileName, path)) {
        return nullptr;
    }
    const auto loadFlags = static_cast<DWORD>(flags);
    auto* const loaded = LoadLibraryExW(path.text(), file, loadFlags);
    return loaded != nullptr ? loaded : LoadLibraryExW(fileName, file, loadFlags);
}

long GetHelpFilePath(wchar_t* buffer, long size)
{
    if (buffer == nullptr || size <= 0) {
        return 0;
    }
    uinfo::TextBuffer<pathCapacity + std::size(helpViewer)> path;
    if (!uinfo::executableFolder(path, modulePathSize) || !path.append(helpViewer)) {
        return 0;
    }
    const auto pathLength = static_cast<long>(path.length());
    if (pathLength >= size - 1) {
        return 0;
    }
    std::copy_n(path.text(), path.length() + 1, buffer);
    return pathLength;
}
