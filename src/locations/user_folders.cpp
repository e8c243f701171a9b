// The running product's folders in the user's profile: each level is the one below it and one component.
#include "platform/text.h"

#include <RkUInfo.h>

#include <shlobj.h>
#include <windows.h>

namespace {

using FolderFunction = unsigned long (*)(wchar_t* const);

unsigned long shellFolder(wchar_t* buffer, int folder)
{
    if (buffer == nullptr) {
        return 0;
    }
    *buffer = 0;
    if (SHGetSpecialFolderPathW(nullptr, buffer, folder, FALSE) == FALSE) {
        *buffer = 0;
        return 0;
    }
    uinfo::BoundedText path = uinfo::BoundedText::behind(buffer, uinfo::pathCapacity);
    if (path.empty()) {
        return 0;
    }
    const wchar_t last = path.text()[path.length() - 1];
    if (last != L'\\' && last != L'/') {
        path.append(L"\\");
    }
    return static_cast<unsigned long>(path.length());
}

/// Appends a text, and a separator where asked for, to the level below; the latter stays where they do not
/// fit.
unsigned long extend(FolderFunction below, wchar_t* buffer, const wchar_t* text, const wchar_t* separator)
{
    if (below(buffer) == 0) {
        return 0;
    }
    uinfo::BoundedText path = uinfo::BoundedText::behind(buffer, uinfo::pathCapacity);
    if (path.length() + uinfo::length(text) + uinfo::length(separator) > uinfo::longestComposedPath) {
        return 0;
    }
    path.append(text);
    path.append(separator);
    return static_cast<unsigned long>(path.length());
}

unsigned long extendByFolder(FolderFunction below, wchar_t* buffer, const wchar_t* name)
{
    return extend(below, buffer, name, L"\\");
}

} // namespace

unsigned long GetUserApplicationDataPath(wchar_t* const buffer)
{
    return shellFolder(buffer, CSIDL_APPDATA);
}

unsigned long GetUserApplicationDataComanyPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataPath, buffer, velaConfig()->companyName());
}

unsigned long GetUserApplicationDataProductPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataComanyPath, buffer, velaConfig()->productName());
}

unsigned long GetUserApplicationDataVersionPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataProductPath, buffer,
                          velaGetProduct()->programVersionString());
}

unsigned long GetUserApplicationDataLanguagePath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataVersionPath, buffer, velaConfig()->language().shortName());
}

unsigned long GetUserApplicationDataSupportPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataLanguagePath, buffer, L"Support");
}

unsigned long GetUserApplicationDataPlottersPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataLanguagePath, buffer, L"Plotters");
}

unsigned long GetUserApplicationDataCrashReportPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataLanguagePath, buffer, L"CrashReport");
}

unsigned long GetUserApplicationDataPrintstylePath(wchar_t* const buffer)
{
    return extendByFolder(GetUserApplicationDataLanguagePath, buffer, L"Printstyle");
}

unsigned long GetUserLocalApplicationDataPath(wchar_t* const buffer)
{
    return shellFolder(buffer, CSIDL_LOCAL_APPDATA);
}

unsigned long GetUserLocalApplicationDataComanyPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserLocalApplicationDataPath, buffer, velaConfig()->companyName());
}

unsigned long GetUserLocalApplicationDataProductPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserLocalApplicationDataComanyPath, buffer, velaConfig()->productName());
}

unsigned long GetUserLocalApplicationDataVersionPath(wchar_t* const buffer)
{
    return extendByFolder(GetUserLocalApplicationDataProductPath, buffer,
                          velaGetProduct()->programVersionString());
}

unsigned long GetUserLocalApplicationDataLanguagePath(wchar_t* const buffer)
{
    return extendByFolder(GetUserLocalApplicationDataVersionPath, buffer,
                          velaConfig()->language().shortName());
}

unsigned long GetUserLocalApplicationDataTemplatePath(wchar_t* const buffer)
{
    return extend(GetUserLocalApplicationDataLanguagePath, buffer, L"Template", L"");
}
