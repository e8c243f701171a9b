#include "program/ini_files.h"

#include "program/paths.h"

#include <io.h>
#include <windows.h>

#include <algorithm>

namespace {

using uinfo::IniResult;

constexpr int readAccess = 4;
constexpr unsigned long longestIniText = 0xFFFF;

/// What read(path) makes of a named entry of a readable file.
template <typename Read>
IniResult readEntry(const wchar_t* section, const wchar_t* key, const wchar_t* fileName, Read read)
{
    if (uinfo::isEmpty(section) || uinfo::isEmpty(key)) {
        return IniResult::missing;
    }
    uinfo::PathBuffer path;
    if (!uinfo::iniFilePath(fileName, path)) {
        return IniResult::badPath;
    }
    return _waccess(path.text(), readAccess) == 0 && read(path.text()) ? IniResult::found
                                                                       : IniResult::missing;
}

} // namespace

namespace uinfo {

bool iniFilePath(const wchar_t* fileName, BoundedText& path)
{
    const wchar_t* const folder = programFolder();
    return !isEmpty(folder) && path.append(folder) && path.length() + length(fileName) <= longestIniPath &&
           path.append(fileName);
}

IniResult readIniText(const wchar_t* section, const wchar_t* key, wchar_t* out, unsigned long capacity,
                      const wchar_t* fileName)
{
    if (out == nullptr || capacity <= 1) {
        return IniResult::missing;
    }
    return readEntry(section, key, fileName, [&](const wchar_t* path) {
        const auto offered = static_cast<DWORD>(std::min(capacity - 1, longestIniText));
        return GetPrivateProfileStringW(section, key, L"", out, offered, path) != 0 && *out != 0;
    });
}

IniResult readIniNumber(const wchar_t* section, const wchar_t* key, long& out, const wchar_t* fileName)
{
    return readEntry(section, key, fileName, [&](const wchar_t* path) {
        out = static_cast<LONG>(GetPrivateProfileIntW(section, key, -1, path));
        return out >= 0;
    });
}

} // namespace uinfo
