// Finds out which languages are installed for the program in a given folder.
#pragma once

#include "installation/languages.h"
#include "platform/text.h"

#include <cstdint>

namespace uinfo {

/// Appends the key path of a language pack's uninstall entry, relative to HKEY_LOCAL_MACHINE. Returns false
/// if the path does not fit.
bool appendUninstallKey(BoundedText& path, const Language& language);

/// Returns whether the uninstall entry of a language pack exists. The argument is the entry's GUID or the
/// language.
bool hasUninstallEntry(const wchar_t* guid);
bool hasUninstallEntry(const Language& language);

enum class Installed
{
    yes,
    noFolder,
    emptyFolder, ///< the folder contains no DLL
    noEntry,     ///< the uninstall entry is missing
};

// programFolder ends with a separator. If programFolder is empty, no language counts as installed.

/// Returns noFolder if the folder shortName does not exist, emptyFolder if it contains no DLL, and yes
/// otherwise. Accepts any folder name.
Installed languageFolder(const wchar_t* programFolder, const wchar_t* shortName);

/// Returns yes if the language is installed, otherwise the first reason why it is not.
Installed installed(const wchar_t* programFolder, const Language& language, bool needsEntry);

/// Returns the index of the most preferred installed language, or unknownLanguage if it finds none.
/// If the search fails because too many files are open, the thread's last error is ERROR_TOO_MANY_OPEN_FILES.
std::int32_t preferredLanguage(const wchar_t* programFolder, bool needsEntry);

} // namespace uinfo
