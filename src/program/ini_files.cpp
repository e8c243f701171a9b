#include "program/ini_files.h"

#include "program/names.h"

#include <io.h>
#include <windows.h>

#include <algorithm>

namespace {

using uinfo::IniResult;

constexpr int readAccess = 4;
constexpr unsigned long longestIniText = 0xFFFF;

/// What read(path) makes of a named entry of a readable file.
template <typename Read>
IniResult readEntry(const wchar_t* folder, const wchar_t* section, const wchar_t* key,
                    const wchar_t* fileName, Read read)
{
    if (uinfo::isEmpty(section) || uinfo::isEmpty(key)) {
        return IniResult::missing;
    }
    uinfo::PathBuffer path;
    if (!uinfo::iniFilePath(folder, fileName, path)) {
        return IniResult::badPath;
    }
    return _waccess(path.text(), readAccess) == 0 && read(path.text()) ? IniResult::found
                                                                       : IniResult::missing;
}

} // namespace

namespace uinfo {

bool iniFilePath(const wchar_t* programFolder, const wchar_t* fileName, BoundedText& path)
{
    return !isEmpty(programFolder) && path.append(programFolder) &&
           path.length() + length(fileName) <= longestIniPath && path.append(fileName);
}

IniResult readIniText(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key, wchar_t* out,
                      unsigned long capacity, const wchar_t* fileName)
{
    if (out == nullptr || capacity <= 1) {
        return IniResult::missing;
    }
    return readEntry(programFolder, section, key, fileName, [&](const wchar_t* path) {
        const auto offered = static_cast<DWORD>(std::min(capacity - 1, longestIniText));
        return GetPrivateProfileStringW(section, key, L"", out, offered, path) != 0 && *out != 0;
    });
}

IniResult readIniNumber(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key, long& out,
                        const wchar_t* fileName)
{
    return readEntry(programFolder, section, key, fileName, [&](const wchar_t* path) {
        out = static_cast<LONG>(GetPrivateProfileIntW(section, key, -1, path));
        return out >= 0;
    });
}

bool readCommandPrefix(const wchar_t* programFolder, BoundedText& prefix)
{
    const auto appendNumber = [&](const wchar_t* key) {
        long number = 0;
        return readIniNumber(programFolder, productSection, key, number, productIni) == IniResult::found &&
               prefix.appendNumber(static_cast<std::int32_t>(number));
    };
    return prefix.append(L"S") && appendNumber(majorVersionKey) && appendNumber(productIdKey) &&
           prefix.append(L"_");
}

} // namespace uinfo
