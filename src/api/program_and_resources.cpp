// Program, language resources and help.
#include "installation/names.h"
#include "installation/program_files.h"
#include "platform/executable.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <windows.h>

#include <algorithm>

namespace {

const wchar_t* lastOf(wchar_t character, const wchar_t* text)
{
    const wchar_t* at = text + uinfo::length(text);
    while (at > text && *at != character) {
        --at;
    }
    return *at == character ? at : nullptr;
}

} // namespace

unsigned long GetProgramPath(wchar_t* buffer, unsigned long size)
{
    if (buffer == nullptr || size == 0) {
        return 0;
    }
    const wchar_t* const folder = uinfo::programFolder();
    const std::size_t folderLength = uinfo::length(folder);
    if (folderLength == 0 || folderLength >= size) {
        return 0;
    }
    std::copy_n(folder, folderLength + 1, buffer);
    return static_cast<unsigned long>(folderLength);
}

unsigned long GetVelaProgramPath(wchar_t* const buffer)
{
    return GetProgramPath(buffer, uinfo::modulePathCapacity);
}

unsigned long GetVelaProgramName(wchar_t* const buffer)
{
    if (buffer == nullptr || !uinfo::executablePath(buffer, uinfo::modulePathCapacity) || *buffer == 0) {
        return 0;
    }
    const wchar_t* separator = lastOf(L'\\', buffer);
    if (separator == nullptr) {
        separator = lastOf(L'/', buffer);
    }
    if (separator == nullptr) {
        return static_cast<unsigned long>(uinfo::length(buffer));
    }
    const wchar_t* const name = separator + 1;
    const wchar_t* const dot = lastOf(L'.', name);
    const auto nameLength = dot != nullptr ? static_cast<std::size_t>(dot - name) : uinfo::length(name);
    std::copy_n(name, nameLength, buffer);
    buffer[nameLength] = 0;
    return static_cast<unsigned long>(nameLength);
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
    return uinfo::resourceFolder(folderName, buffer, size);
}

HINSTANCE LoadResourceDll(const wchar_t* fileName)
{
    return uinfo::loadResourceLibrary(GetCurrentLanguageShortName(), fileName,
                                      [](const wchar_t* path) { return LoadLibraryW(path); });
}

HINSTANCE LoadResourceDllEx(const wchar_t* fileName, void* file, unsigned long flags)
{
    return uinfo::loadResourceLibrary(GetCurrentLanguageShortName(), fileName, [&](const wchar_t* path) {
        return LoadLibraryExW(path, file, static_cast<DWORD>(flags));
    });
}

long GetHelpFilePath(wchar_t* buffer, long size)
{
    if (buffer == nullptr || size <= 0) {
        return 0;
    }
    uinfo::TextBuffer<uinfo::pathCapacity + sizeof uinfo::helpViewer> path;
    if (!uinfo::programFilePath(uinfo::helpViewer, path)) {
        return 0;
    }
    const auto pathLength = static_cast<long>(path.length());
    if (pathLength >= size - 1) {
        return 0;
    }
    std::copy_n(path.text(), path.length() + 1, buffer);
    return pathLength;
}
