// The process-wide language resource library, which contains the local names of the languages.
#pragma once

#include <windows.h>

namespace uinfo {

/// Returns the library, or null while it cannot be loaded. Loads the library once, like LoadResourceDll;
/// after a failure the next call tries again. May be called from any thread.
HINSTANCE languageResources();

/// Unloads the library if it is loaded.
void releaseLanguageResources();

} // namespace uinfo
