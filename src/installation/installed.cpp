#include "installation/installed.h"

#include "platform/files.h"
#include "platform/registry_key.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace {

using uinfo::RegistryKey;

constexpr wchar_t uninstallKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

constexpr auto preferenceOrder = [] {
    std::array<uinfo::Language, uinfo::languageCount> sorted = std::to_array(uinfo::languages);
    std::ranges::sort(sorted, {}, &uinfo::Language::preference);
    return sorted;
}();

bool hasUninstallString(const wchar_t* path)
{
    const RegistryKey key = RegistryKey::open(HKEY_LOCAL_MACHINE, path, KEY_READ);
    return key && RegQueryValueExW(key.get(), L"UninstallString", nullptr, nullptr, nullptr, nullptr) ==
                      ERROR_SUCCESS;
}

} // namespace

namespace uinfo {

bool appendUninstallKey(BoundedText& path, const Language& language)
{
    return path.append(uninstallKey) && path.append(L"{5C3D71E0-B00F-") && path.appendNumber(language.lcid) &&
           path.append(L"-C10E-9E40B6D2F815}");
}

bool hasUninstallEntry(const wchar_t* guid)
{
    PathBuffer path;
    return !isEmpty(guid) && path.append(uninstallKey) && path.append(guid) &&
           hasUninstallString(path.text());
}

bool hasUninstallEntry(const Language& language)
{
    PathBuffer path;
    return appendUninstallKey(path, language) && hasUninstallString(path.text());
}

Installed languageFolder(const wchar_t* programFolder, const wchar_t* shortName)
{
    PathBuffer path;
    if (isEmpty(programFolder) || isEmpty(shortName) || !path.append(programFolder) ||
        !joinPath(path, shortName) || !isReadable(path.text())) {
        return Installed::noFolder;
    }
    const bool endsWithSeparator = path.text()[path.length() - 1] == L'\\';
    return path.append(endsWithSeparator ? L"*.dll" : L"\\*.dll") && hasMatch(path.text())
               ? Installed::yes
               : Installed::emptyFolder;
}

Installed installed(const wchar_t* programFolder, const Language& language, bool needsEntry)
{
    const Installed folder = languageFolder(programFolder, language.shortName);
    return folder == Installed::yes && needsEntry && !hasUninstallEntry(language) ? Installed::noEntry
                                                                                  : folder;
}

std::int32_t preferredLanguage(const wchar_t* programFolder, bool needsEntry)
{
    SetLastError(ERROR_SUCCESS);
    for (const Language& language : preferenceOrder) {
        if (installed(programFolder, language, needsEntry) == Installed::yes) {
            return findLanguage(language.shortName);
        }
        if (GetLastError() == ERROR_TOO_MANY_OPEN_FILES) {
            break; // the next search would fail too
        }
    }
    return unknownLanguage;
}

} // namespace uinfo
