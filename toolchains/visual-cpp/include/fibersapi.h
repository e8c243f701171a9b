// What libc++ takes from here is in Wine's windows.h.
#pragma once

#include <windows.h>
