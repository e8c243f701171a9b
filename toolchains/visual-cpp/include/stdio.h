// Adds the parts of Visual C++'s stdio.h that are missing from Wine's.
#pragma once

#include_next <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif

_ACRTIMP int __cdecl __stdio_common_vsnprintf_s(unsigned __int64, char*, size_t, size_t, const char*,
                                                _locale_t, va_list);

static inline int vsnprintf_s(char* buffer, size_t size, size_t count, const char* format, va_list args)
{
    return __stdio_common_vsnprintf_s(0, buffer, size, count, format, 0, args);
}

#ifdef __cplusplus
}
#endif
