// Adds the parts of Visual C++'s stdlib.h that are missing from Wine's.
#pragma once

#include_next <stdlib.h>

#include <corecrt.h>

#ifdef __cplusplus
extern "C" {
#endif

_ACRTIMP int __cdecl ___mb_cur_max_func(void);
_ACRTIMP int __cdecl ___mb_cur_max_l_func(_locale_t);
_ACRTIMP float __cdecl _strtof_l(const char*, char**, _locale_t);
_ACRTIMP double __cdecl _strtod_l(const char*, char**, _locale_t);
_ACRTIMP long double __cdecl wcstold(const wchar_t*, wchar_t**);
_ACRTIMP errno_t __cdecl _dupenv_s(char**, size_t*, const char*);
_ACRTIMP int* __cdecl __sys_nerr(void);
_ACRTIMP unsigned __cdecl _set_abort_behavior(unsigned, unsigned);

#ifdef __cplusplus
}
#endif

#define _WRITE_ABORT_MSG 1
#define _CALL_REPORTFAULT 2
#ifndef MB_CUR_MAX
#define MB_CUR_MAX ___mb_cur_max_func()
#endif
#define _sys_nerr (*__sys_nerr())
