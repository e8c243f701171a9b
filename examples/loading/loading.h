// The first step of a program.
#pragma once

/// Restricts the search for libraries to the program's and the system's folder; docs/LOADING.md explains why.
/// Does nothing on Linux, where no code of a library that is loaded by name runs.
void loadLibrariesSafely();
