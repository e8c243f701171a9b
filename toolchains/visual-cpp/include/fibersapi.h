// libc++ uses functions of this header that Wine declares in windows.h.
#pragma once

#include <windows.h>
