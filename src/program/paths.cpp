#include "program/paths.h"

#include "platform/executable.h"
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
    if (isEmpty(name) || buffer == nullptr || size == 0 || !executablePath(buffer, size)) {
        return 0;
    }
    PathRemoveFileSpecW(buffer);
    constexpr std::size_t spare = 3; // the separator, the terminator and one that no path needs
    if (length(buffer) + length(name) + spare >= size || PathAppendW(buffer, name) == FALSE) {
        return 0;
    }
    return static_cast<unsigned long>(length(buffer));
}

bool programFilePath(const wchar_t* name, BoundedText& path)
{
    PathBuffer folder;
    return executableFolder(folder, modulePathCapacity) && path.append(folder.text()) && path.append(name);
}

bool resourceFilePath(const wchar_t* folderName, const wchar_t* fileName, PathBuffer& path)
{
    if (isEmpty(fileName)) {
        return false;
    }
    const unsigned long folderLength = resourceFolder(folderName, path.data(), modulePathCapacity);
    return folderLength != 0 && length(fileName) + folderLength + 2 < modulePathCapacity &&
           PathAppendW(path.data(), fileName) != FALSE;
}

} // namespace uinfo
