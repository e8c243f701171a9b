// The process-wide language resource library, which contains the local names of the languages.
#pragma once

#include <windows.h>

namespace uinfo {

/// Returns the library, which the first call loads from the current language's folder; null while that fails.
/// May be called from any thread.
HINSTANCE languageResources();

/// Unloads the library if it is loaded.
void releaseLanguageResources();

} // namespace uinfo
