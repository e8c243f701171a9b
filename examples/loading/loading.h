// Makes library loading safe; every example program calls this function first.
#pragma once

/// Restricts the search for libraries to the program folder and the system folder; docs/LOADING.md explains
/// why. Does nothing on Linux.
void loadLibrariesSafely();
