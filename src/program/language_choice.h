// Which languages are installed, and which one start-up takes. Looking changes nothing.
#pragma once

#include "platform/text.h"
#include "program/languages.h"

#include <cstdint>

namespace uinfo {

/// Appends the key of a language pack's uninstall entry, relative to HKEY_LOCAL_MACHINE; false when it does
/// not fit.
bool appendUninstallKey(BoundedText& path, const Language& language);

/// Whether there is an uninstall entry of that GUID.
bool hasUninstallEntry(const wchar_t* guid);
bool hasUninstallEntry(const Language& language);

enum class Installed
{
    yes,
    noFolder,
    emptyFolder, ///< it holds no library
    noEntry,
};

/// The folder's part of the answer, for any name: yes, noFolder or emptyFolder.
Installed languageFolder(const wchar_t* shortName);

/// Whether a language is installed, or what it lacks first. The default product alone needs the uninstall
/// entry.
Installed installed(const Language& language, bool needsEntry);

/// The index of the first installed language in the order of preference, else unknownLanguage.
std::int32_t preferredLanguage(bool needsEntry);

/// The language that start-up takes, and whether it can.
class LanguageChoice
{
public:
    enum class Source
    {
        none, ///< nothing names a language
        argument,
        registry, ///< what the last start-up remembered
        iniFile,
    };

    /// The first source that names a language decides: a name that is refused does not lead to the next one.
    LanguageChoice(const wchar_t* argument, const wchar_t* versionRoot, bool needsEntry);

    Source source() const { return m_source; }
    /// As the source gives it; empty when there is none.
    const wchar_t* name() const { return m_name; }
    /// Its index; unknownLanguage when it names no language.
    std::int32_t language() const { return m_language; }
    bool canBeTaken() const { return m_language != unknownLanguage && m_installed == Installed::yes; }
    /// Of a known language.
    Installed installed() const { return m_installed; }

private:
    void find(const wchar_t* argument, const wchar_t* versionRoot);

    static constexpr std::size_t rememberedCapacity = 8; // a name of 6 characters still counts
    static constexpr std::size_t iniCapacity = 7;        // of which 5 characters come back

    TextBuffer<rememberedCapacity> m_remembered;
    wchar_t m_mapped[iniCapacity];
    Source m_source = Source::none;
    const wchar_t* m_name = L"";
    std::int32_t m_language = unknownLanguage;
    Installed m_installed = Installed::noFolder;
};

} // namespace uinfo
