// The first thing that a program does.
#pragma once

/// From here on libraries are looked for in the program's and the system's folder alone; docs/LOADING.md says
/// why. On a Linux host no code of a library that is loaded by name runs, and there is nothing to do.
void loadLibrariesSafely();
