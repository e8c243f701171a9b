// The process-wide language resource library, which contains the local names of the languages.
#pragma once

#include <windows.h>

namespace uinfo {

/// Returns the library, or null if it cannot be loaded. The first call loads the library, after searching for
/// it in the same places as LoadResourceDll. After a failure, the next call tries again. May be called from
/// any thread.
HINSTANCE languageResources();

/// Unloads the library if it is loaded.
void releaseLanguageResources();

} // namespace uinfo
