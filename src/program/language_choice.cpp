#include "program/language_choice.h"

#include "platform/executable.h"
#include "platform/handles.h"
#include "platform/registry_key.h"
#include "program/ini_files.h"
#include "program/names.h"

#include <io.h>
#include <shlwapi.h>
#include <windows.h>

#include <algorithm>
#include <array>

namespace {

using uinfo::RegistryKey;

constexpr int readAccess = 4;
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

bool readRemembered(const wchar_t* versionRoot, uinfo::BoundedText& shortName)
{
    const RegistryKey root = RegistryKey::open(HKEY_CURRENT_USER, versionRoot, KEY_READ);
    return root && root.queryString(uinfo::currentLanguageValue, shortName);
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

Installed languageFolder(const wchar_t* shortName)
{
    PathBuffer folder;
    if (isEmpty(shortName) || !executablePath(folder.data(), pathCapacity) ||
        PathRemoveFileSpecW(folder.data()) == FALSE) {
        return Installed::noFolder;
    }
    folder.measure();
    if (length(shortName) + folder.length() + 1 >= pathCapacity ||
        PathAppendW(folder.data(), shortName) == FALSE || _waccess(folder.text(), readAccess) != 0) {
        return Installed::noFolder;
    }
    folder.measure();
    constexpr wchar_t pattern[] = L"\\*.dll";
    constexpr std::size_t patternSpace = 7;
    if (folder.length() + patternSpace >= pathCapacity) {
        return Installed::noFolder;
    }
    const bool endsWithSeparator = folder.text()[folder.length() - 1] == L'\\';
    folder.append(endsWithSeparator ? pattern + 1 : pattern);
    return FindHandle(folder.text()) ? Installed::yes : Installed::emptyFolder;
}

Installed installed(const Language& language, bool needsEntry)
{
    const Installed folder = languageFolder(language.shortName);
    return folder == Installed::yes && needsEntry && !hasUninstallEntry(language) ? Installed::noEntry
                                                                                  : folder;
}

std::int32_t preferredLanguage(bool needsEntry)
{
    for (const Language& language : preferenceOrder) {
        if (installed(language, needsEntry) == Installed::yes) {
            return findLanguage(language.shortName);
        }
    }
    return unknownLanguage;
}

LanguageChoice::LanguageChoice(const wchar_t* argument, const wchar_t* versionRoot, bool needsEntry)
{
    find(argument, versionRoot);
    m_language = findLanguage(m_name);
    if (m_language != unknownLanguage) {
        m_installed = uinfo::installed(languages[m_language], needsEntry);
    }
}

void LanguageChoice::find(const wchar_t* argument, const wchar_t* versionRoot)
{
    if (!isEmpty(argument)) {
        m_source = Source::argument;
        m_name = argument;
        return;
    }
    if (readRemembered(versionRoot, m_remembered)) {
        m_source = Source::registry;
        m_name = m_remembered.text();
        return;
    }
    wchar_t localeId[iniCapacity];
    if (readIniText(productSection, L"LocaleId", localeId, iniCapacity, tarvoIni) == IniResult::found &&
        readIniText(L"LocaleIdLangName", localeId, m_mapped, iniCapacity, tarvoIni) == IniResult::found) {
        m_source = Source::iniFile;
        m_name = m_mapped;
    }
}

} // namespace uinfo
