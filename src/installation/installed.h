// Which languages are installed for the program of a folder.
#pragma once

#include "installation/languages.h"
#include "platform/text.h"

#include <cstdint>

namespace uinfo {

/// Appends the key of a language pack's uninstall entry, relative to HKEY_LOCAL_MACHINE; false if it does not
/// fit.
bool appendUninstallKey(BoundedText& path, const Language& language);

/// Returns whether there is an uninstall entry of that GUID.
bool hasUninstallEntry(const wchar_t* guid);
bool hasUninstallEntry(const Language& language);

enum class Installed
{
    yes,
    noFolder,
    emptyFolder, ///< it contains no library
    noEntry,
};

// The program folder ends with a separator. An empty one, which is not known, has no language.

/// Returns what the folder of that name, which may be any, contributes: yes, noFolder or emptyFolder.
Installed languageFolder(const wchar_t* programFolder, const wchar_t* shortName);

/// Returns whether a language is installed, or what is missing first.
Installed installed(const wchar_t* programFolder, const Language& language, bool needsEntry);

/// Returns the index of the first installed language in the order of preference, else unknownLanguage.
std::int32_t preferredLanguage(const wchar_t* programFolder, bool needsEntry);

} // namespace uinfo
