#include "installation/ini_files.h"

#include "installation/names.h"
#include "platform/files.h"

#include <windows.h>

#include <algorithm>

namespace {

constexpr unsigned long longestIniText = 0xFFFF;

/// Calls read(path) if the entry has a name and the file can be read.
template <typename Read>
TarvoConfig::Error readEntry(const wchar_t* folder, const wchar_t* section, const wchar_t* key,
                             const wchar_t* fileName, Read read)
{
    if (uinfo::isEmpty(section) || uinfo::isEmpty(key)) {
        return TarvoConfig::eNotFound;
    }
    uinfo::PathBuffer path;
    if (!uinfo::iniFilePath(folder, fileName, path)) {
        return TarvoConfig::eInvalidInput;
    }
    return uinfo::isReadable(path.text()) && read(path.text()) ? TarvoConfig::eOk : TarvoConfig::eNotFound;
}

} // namespace

namespace uinfo {

bool iniFilePath(const wchar_t* programFolder, const wchar_t* fileName, BoundedText& path)
{
    return !isEmpty(programFolder) && path.append(programFolder) && path.append(fileName, longestIniPath);
}

TarvoConfig::Error readIniText(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key,
                               wchar_t* out, unsigned long capacity, const wchar_t* fileName)
{
    if (out == nullptr || capacity <= 1) {
        return TarvoConfig::eNotFound;
    }
    return readEntry(programFolder, section, key, fileName, [&](const wchar_t* path) {
        const auto offered = static_cast<DWORD>(std::min(capacity - 1, longestIniText));
        return GetPrivateProfileStringW(section, key, L"", out, offered, path) != 0 && *out != 0;
    });
}

TarvoConfig::Error readIniNumber(const wchar_t* programFolder, const wchar_t* section, const wchar_t* key,
                                 long& out, const wchar_t* fileName)
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
        return readIniNumber(programFolder, productSection, key, number, productIni) == TarvoConfig::eOk &&
               prefix.appendNumber(static_cast<std::int32_t>(number));
    };
    return prefix.append(L"S") && appendNumber(majorVersionKey) && appendNumber(productIdKey) &&
           prefix.append(L"_");
}

} // namespace uinfo
