// libc++ includes this header for functions that Wine declares in windows.h.
#pragma once

#include <windows.h>
