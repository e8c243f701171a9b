// What the library knows after start-up.
#pragma once

#include <RkUInfo.h>

/// Prints the answer of every function of RkUInfo.h; always eOk.
TarvoConfig::Error report();
