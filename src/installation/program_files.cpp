#include "installation/program_files.h"

#include "platform/executable.h"
#include "platform/files.h"
#include "platform/text_cache.h"

#include <shlwapi.h>

namespace {

wchar_t folderCache[uinfo::pathCapacity];

bool readProgramFolder(uinfo::BoundedText& folder)
{
    return uinfo::executableFolderOrCut(folder, uinfo::modulePathCapacity);
}

} // namespace

namespace uinfo {

const wchar_t* programFolder()
{
    return cachedText(folderCache, readProgramFolder);
}

unsigned long resourceFolder(const wchar_t* name, wchar_t* buffer, unsigned long size)
{
    constexpr unsigned long spare = 3; // the terminator and two unused characters
    if (isEmpty(name) || buffer == nullptr || size <= spare || !executablePath(buffer, size)) {
        return 0;
    }
    PathRemoveFileSpecW(buffer);
    BoundedText folder = BoundedText::appendingTo(buffer, size);
    return joinPath(folder, name, size - spare) ? static_cast<unsigned long>(folder.length()) : 0;
}

bool programFilePath(const wchar_t* name, BoundedText& path)
{
    PathBuffer folder;
    return executableFolder(folder, modulePathCapacity) && path.append(folder.text()) && path.append(name);
}

bool resourceFilePath(const wchar_t* folderName, const wchar_t* fileName, PathBuffer& path)
{
    if (isEmpty(fileName) || resourceFolder(folderName, path.data(), modulePathCapacity) == 0) {
        return false;
    }
    path.measure();
    return joinPath(path, fileName, longestResourcePath);
}

} // namespace uinfo
