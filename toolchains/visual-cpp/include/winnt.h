// Wine defines an intrinsic that clang has built in for this target.
#pragma once

#define _InterlockedCompareExchange128 wineInterlockedCompareExchange128
#include_next <winnt.h>
#undef _InterlockedCompareExchange128
