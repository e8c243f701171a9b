// Renames Wine's definition of an intrinsic, because clang has a built-in function of that name for this
// target.
#pragma once

#define _InterlockedCompareExchange128 wineInterlockedCompareExchange128
#include_next <winnt.h>
#undef _InterlockedCompareExchange128
