#include "loading/loading.h"

#include <windows.h>

void loadLibrariesSafely()
{
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
}
