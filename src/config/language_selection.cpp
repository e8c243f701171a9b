// Which installed language the process runs in.
#include "config/names.h"
#include "platform/executable.h"
#include "platform/handles.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <io.h>
#include <shlwapi.h>
#include <windows.h>

namespace {

using uinfo::isEmpty;
using uinfo::pathCapacity;
using uinfo::RegistryKey;

constexpr int readAccess = 4;
constexpr UINT failureExitCode = 1;
constexpr std::size_t shortNameCapacity = 8; // of "CurVer", which may have 6 characters
constexpr unsigned long iniNameCapacity = 7; // of which 5 characters come back

/// A language pack's uninstall entry, in order of preference.
struct LanguageProbe
{
    const wchar_t* guid;
    long language;
};

constexpr LanguageProbe probes[] = {
    {L"{5C3D71E0-B00F-1033-C10E-9E40B6D2F815}", 2},  // en-US
    {L"{5C3D71E0-B00F-2052-C10E-9E40B6D2F815}", 13}, // zh-CN
    {L"{5C3D71E0-B00F-1028-C10E-9E40B6D2F815}", 14}, // zh-TW
    {L"{5C3D71E0-B00F-1041-C10E-9E40B6D2F815}", 7},  // ja-JP
    {L"{5C3D71E0-B00F-1042-C10E-9E40B6D2F815}", 8},  // ko-KR
    {L"{5C3D71E0-B00F-1045-C10E-9E40B6D2F815}", 9},  // pl-PL
    {L"{5C3D71E0-B00F-1029-C10E-9E40B6D2F815}", 0},  // cs-CZ
    {L"{5C3D71E0-B00F-1031-C10E-9E40B6D2F815}", 1},  // de-DE
    {L"{5C3D71E0-B00F-3082-C10E-9E40B6D2F815}", 3},  // es-ES
    {L"{5C3D71E0-B00F-1036-C10E-9E40B6D2F815}", 4},  // fr-FR
    {L"{5C3D71E0-B00F-1038-C10E-9E40B6D2F815}", 5},  // hu-HU
    {L"{5C3D71E0-B00F-1040-C10E-9E40B6D2F815}", 6},  // it-IT
    {L"{5C3D71E0-B00F-1046-C10E-9E40B6D2F815}", 10}, // pt-BR
    {L"{5C3D71E0-B00F-1049-C10E-9E40B6D2F815}", 11}, // ru-RU
    {L"{5C3D71E0-B00F-1055-C10E-9E40B6D2F815}", 12}, // tr-TR
};

const wchar_t* guidOf(long language)
{
    for (const LanguageProbe& probe : probes) {
        if (probe.language == language) {
            return probe.guid;
        }
    }
    return nullptr;
}

bool readCurrentLanguage(const wchar_t* versionRoot, uinfo::BoundedText& shortName)
{
    const RegistryKey root = RegistryKey::open(HKEY_CURRENT_USER, versionRoot, KEY_READ);
    return root && root.queryString(uinfo::currentVersion, shortName);
}

[[noreturn]] void refuseToStart(const wchar_t* caption, const wchar_t* message)
{
    MessageBoxW(nullptr, message, caption, MB_OK | MB_ICONERROR);
    ExitProcess(failureExitCode);
}

bool userAccepts(const wchar_t* caption, const TarvoLanguage& proposed)
{
    uinfo::PathBuffer question;
    question.append(L"The input language is not installed, continue with ");
    question.append(proposed.globalName());
    question.append(L"?");
    return MessageBoxW(nullptr, question.text(), caption, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

} // namespace

TarvoConfig::Error TarvoConfig::initLanguageName(const wchar_t* language)
{
    if (isEmpty(m_versionRootPath)) {
        return eInvalidInput;
    }
    uinfo::TextBuffer<shortNameCapacity> remembered;
    wchar_t localeId[iniNameCapacity] = {};
    wchar_t mapped[iniNameCapacity] = {};
    if (!isEmpty(language)) {
        if (!TarvoLanguage::isValidShortName(language)) {
            refuseToStart(productName(),
                          L"The input initial language name is not a valid short language name.The program "
                          L"will exit.");
        }
    } else if (readCurrentLanguage(m_versionRootPath, remembered)) {
        language = remembered.text();
    } else if (readIniString(uinfo::productSection, L"LocaleId", localeId, iniNameCapacity,
                             uinfo::tarvoIni) == eOk &&
               readIniString(L"LocaleIdLangName", localeId, mapped, iniNameCapacity, uinfo::tarvoIni) ==
                   eOk) {
        language = mapped;
    }
    if (TarvoLanguage::isValidShortName(language) && isLanguageExist(language)) {
        m_language = TarvoLanguage(language);
    }
    if (m_language.language() < 0) {
        const long installed = queryAInstalledLangInOrder();
        if (installed < 0) {
            refuseToStart(productName(), L"Could't find any installed languages!");
        }
        const TarvoLanguage proposed(installed);
        if (!userAccepts(productName(), proposed)) {
            ExitProcess(failureExitCode);
        }
        m_language = proposed;
    }
    refreshLanguageName();
    return eOk;
}

int TarvoConfig::refreshLanguageName()
{
    if (isEmpty(m_versionRootPath) || m_language.language() < 0) {
        return 0;
    }
    const RegistryKey root = RegistryKey::open(HKEY_CURRENT_USER, m_versionRootPath, KEY_WRITE);
    return root && root.setString(uinfo::currentVersion, m_language.shortName()) ? 1 : 0;
}

bool TarvoConfig::isLanguageExist(const wchar_t* shortName)
{
    if (isEmpty(shortName)) {
        return false;
    }
    if (!isInitTARVOProduct()) {
        return isLangFolderExist(shortName); // a rebranded product has no uninstall entries
    }
    return isLangGuidExist(guidOf(TarvoLanguage::shortNameToLangId(shortName))) &&
           isLangFolderExist(shortName);
}

bool TarvoConfig::isLangGuidExist(const wchar_t* guid)
{
    uinfo::PathBuffer entry;
    if (isEmpty(guid) || !entry.append(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\") ||
        !entry.append(guid)) {
        return false;
    }
    const RegistryKey key = RegistryKey::open(HKEY_LOCAL_MACHINE, entry.text(), KEY_READ);
    return key && RegQueryValueExW(key.get(), L"UninstallString", nullptr, nullptr, nullptr, nullptr) ==
                      ERROR_SUCCESS;
}

bool TarvoConfig::isLangFolderExist(const wchar_t* shortName)
{
    uinfo::PathBuffer folder;
    if (isEmpty(shortName) || !uinfo::executablePath(folder.data(), pathCapacity) ||
        PathRemoveFileSpecW(folder.data()) == FALSE) {
        return false;
    }
    folder.measure();
    if (uinfo::length(shortName) + folder.length() + 1 >= pathCapacity ||
        PathAppendW(folder.data(), shortName) == FALSE || _waccess(folder.text(), readAccess) != 0) {
        return false;
    }
    folder.measure();
    constexpr wchar_t pattern[] = L"\\*.dll";
    constexpr std::size_t patternSpace = 7;
    if (folder.length() + patternSpace >= pathCapacity) {
        return false;
    }
    const bool endsWithSeparator = folder.text()[folder.length() - 1] == L'\\';
    folder.append(endsWithSeparator ? pattern + 1 : pattern);
    return static_cast<bool>(uinfo::FindHandle(folder.text()));
}

long TarvoConfig::queryAInstalledLangInOrder()
{
    const bool needsUninstallEntry = isInitTARVOProduct();
    for (const LanguageProbe& probe : probes) {
        if (needsUninstallEntry && !isLangGuidExist(probe.guid)) {
            continue;
        }
        if (isLangFolderExist(TarvoLanguage(probe.language).shortName())) {
            return probe.language;
        }
    }
    return -1;
}

TarvoConfig::Error TarvoConfig::verifyResourcePath()
{
    uinfo::PathBuffer folder;
    if (GetResourceDllPath(folder.data(), pathCapacity - 1) == 0) {
        return eInvalidInput;
    }
    return _waccess(folder.text(), readAccess) == 0 ? eOk : eRegistryError;
}
