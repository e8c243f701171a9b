// The process's one language resource library, which has the languages' local names.
#pragma once

#include <windows.h>

namespace uinfo {

/// Loads the library from the current language's folder on first use; null while it cannot be loaded.
HINSTANCE languageResources();

/// Releases the library if it has been loaded; the next request loads it again.
void releaseLanguageResources();

} // namespace uinfo
