// The language step of start-up.
#include "config/access.h"
#include "installation/choices.h"
#include "installation/names.h"
#include "installation/program_files.h"
#include "platform/executable.h"
#include "platform/files.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <windows.h>

namespace {

using uinfo::isEmpty;
using uinfo::RegistryKey;

constexpr UINT failureExitCode = 1;

/// The program folder, not cached; empty if it cannot be read.
class ProgramFolder : public uinfo::PathBuffer
{
public:
    ProgramFolder() { uinfo::executableFolder(*this, uinfo::pathCapacity); }
};

[[noreturn]] void refuseToStart(const wchar_t* caption, const wchar_t* message)
{
    MessageBoxW(nullptr, message, caption, MB_OK | MB_ICONERROR);
    ExitProcess(failureExitCode);
}

bool userAccepts(const wchar_t* caption, const TarvoLanguage& proposed)
{
    uinfo::PathBuffer question;
    return question.append(L"The input language is not installed, continue with ") &&
           question.append(proposed.globalName()) && question.append(L"?") &&
           MessageBoxW(nullptr, question.text(), caption, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

} // namespace

TarvoConfig::Error TarvoConfig::initLanguageName(const wchar_t* language)
{
    if (isEmpty(m_versionRootPath)) {
        return eInvalidInput;
    }
    const bool needsEntry = isInitTARVOProduct();
    const ProgramFolder folder;
    const uinfo::LanguageChoice choice =
        uinfo::chooseLanguage(language, m_versionRootPath, folder.text(), needsEntry);
    if (choice.decision().source == uinfo::Source::argument &&
        choice.decision().answer == uinfo::Answer::notALanguage) {
        refuseToStart(productName(), L"The input initial language name is not a valid short language name."
                                     L"The program will exit.");
    }
    if (choice.isMade()) {
        m_language = TarvoLanguage(choice.language);
    }
    if (m_language.language() < 0) {
        const std::int32_t installed = uinfo::preferredLanguage(folder.text(), needsEntry);
        if (installed < 0 && GetLastError() == ERROR_TOO_MANY_OPEN_FILES) {
            return eRegistryError; // languages may be installed, but the search failed
        }
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
    return root && root.setString(uinfo::currentLanguageValue, m_language.shortName()) ? 1 : 0;
}

bool TarvoConfig::isLanguageExist(const wchar_t* shortName)
{
    if (!isInitTARVOProduct()) {
        return isLangFolderExist(shortName); // other products have no uninstall entries
    }
    const std::int32_t language = uinfo::findLanguage(shortName);
    return language != uinfo::unknownLanguage &&
           uinfo::installed(ProgramFolder().text(), uinfo::languages[language], true) ==
               uinfo::Installed::yes;
}

bool TarvoConfig::isLangGuidExist(const wchar_t* guid)
{
    return uinfo::hasUninstallEntry(guid);
}

bool TarvoConfig::isLangFolderExist(const wchar_t* shortName)
{
    return uinfo::languageFolder(ProgramFolder().text(), shortName) == uinfo::Installed::yes;
}

long TarvoConfig::queryAInstalledLangInOrder()
{
    return uinfo::preferredLanguage(ProgramFolder().text(), isInitTARVOProduct());
}

TarvoConfig::Error TarvoConfig::verifyResourcePath()
{
    uinfo::PathBuffer folder;
    if (uinfo::resourceFolder(uinfo::ConfigAccess::instance().language().shortName(), folder.data(),
                              uinfo::pathCapacity - 1) == 0) {
        return eInvalidInput;
    }
    return uinfo::isReadable(folder.text()) ? eOk : eRegistryError;
}
