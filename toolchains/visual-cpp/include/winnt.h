// Renames an intrinsic that Wine defines, because clang has it built in for this target.
#pragma once

#define _InterlockedCompareExchange128 wineInterlockedCompareExchange128
#include_next <winnt.h>
#undef _InterlockedCompareExchange128
