// Per-user folders.
#include "installation/layout.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <shlobj.h>
#include <windows.h>

namespace {

using uinfo::UserFolder;

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
    uinfo::BoundedText path = uinfo::BoundedText::appendingTo(buffer, uinfo::pathCapacity);
    if (path.empty()) {
        return 0;
    }
    const wchar_t last = path.text()[path.length() - 1];
    const bool ends = last == L'\\' || last == L'/' || path.append(L"\\");
    return ends ? static_cast<unsigned long>(path.length()) : 0;
}

unsigned long userFolder(wchar_t* buffer, int shell, UserFolder folder)
{
    if (shellFolder(buffer, shell) == 0) {
        return 0;
    }
    const TarvoConfig& config = *velaConfig();
    uinfo::BoundedText path = uinfo::BoundedText::appendingTo(buffer, uinfo::pathCapacity);
    const bool fits = uinfo::appendUserFolder(
        path, folder, {config.companyName(), config.productName(), config.language().shortName()});
    return fits ? static_cast<unsigned long>(path.length()) : 0;
}

} // namespace

unsigned long GetUserApplicationDataPath(wchar_t* const buffer)
{
    return shellFolder(buffer, CSIDL_APPDATA);
}

unsigned long GetUserApplicationDataComanyPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::company);
}

unsigned long GetUserApplicationDataProductPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::product);
}

unsigned long GetUserApplicationDataVersionPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::version);
}

unsigned long GetUserApplicationDataLanguagePath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::language);
}

unsigned long GetUserApplicationDataSupportPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::support);
}

unsigned long GetUserApplicationDataPlottersPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::plotters);
}

unsigned long GetUserApplicationDataCrashReportPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::crashReport);
}

unsigned long GetUserApplicationDataPrintstylePath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_APPDATA, UserFolder::printstyle);
}

unsigned long GetUserLocalApplicationDataPath(wchar_t* const buffer)
{
    return shellFolder(buffer, CSIDL_LOCAL_APPDATA);
}

unsigned long GetUserLocalApplicationDataComanyPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_LOCAL_APPDATA, UserFolder::company);
}

unsigned long GetUserLocalApplicationDataProductPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_LOCAL_APPDATA, UserFolder::product);
}

unsigned long GetUserLocalApplicationDataVersionPath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_LOCAL_APPDATA, UserFolder::version);
}

unsigned long GetUserLocalApplicationDataLanguagePath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_LOCAL_APPDATA, UserFolder::language);
}

unsigned long GetUserLocalApplicationDataTemplatePath(wchar_t* const buffer)
{
    return userFolder(buffer, CSIDL_LOCAL_APPDATA, UserFolder::templates);
}
