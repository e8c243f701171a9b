// The INI files beside the executable.
#include "platform/text.h"

#include <RkUInfo.h>

#include <io.h>
#include <windows.h>

#include <algorithm>

namespace {

constexpr int readAccess = 4;
constexpr unsigned long longestIniText = 0xFFFF;

} // namespace

TarvoConfig::Error TarvoConfig::getIniFilePath(wchar_t* out, const wchar_t* fileName)
{
    if (out == nullptr) {
        return eInvalidInput;
    }
    uinfo::BoundedText path(out, uinfo::pathCapacity);
    if (GetProgramPath(out, uinfo::pathCapacity - 1) == 0) {
        return eInvalidInput;
    }
    path.measure();
    if (path.length() + uinfo::length(fileName) >= uinfo::pathCapacity - 1) {
        return eInvalidInput;
    }
    path.append(fileName);
    return eOk;
}

TarvoConfig::Error TarvoConfig::readIniString(const wchar_t* section, const wchar_t* key, wchar_t* out,
                                              unsigned long outChars, const wchar_t* fileName)
{
    if (uinfo::isEmpty(section) || uinfo::isEmpty(key) || out == nullptr || outChars <= 1) {
        return eNotFound;
    }
    uinfo::PathBuffer path;
    if (const Error error = getIniFilePath(path.data(), fileName); error != eOk) {
        return error;
    }
    if (_waccess(path.text(), readAccess) != 0) {
        return eNotFound;
    }
    const auto offered = static_cast<DWORD>(std::min(outChars - 1, longestIniText));
    const DWORD copied = GetPrivateProfileStringW(section, key, L"", out, offered, path.text());
    return copied != 0 && *out != 0 ? eOk : eNotFound;
}

TarvoConfig::Error TarvoConfig::readIniInt(const wchar_t* section, const wchar_t* key, long& out,
                                           const wchar_t* fileName)
{
    if (uinfo::isEmpty(section) || uinfo::isEmpty(key)) {
        return eNotFound;
    }
    uinfo::PathBuffer path;
    if (const Error error = getIniFilePath(path.data(), fileName); error != eOk) {
        return error;
    }
    if (_waccess(path.text(), readAccess) != 0) {
        return eNotFound;
    }
    out = static_cast<LONG>(GetPrivateProfileIntW(section, key, -1, path.text()));
    return out < 0 ? eNotFound : eOk;
}
