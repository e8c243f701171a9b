// Adds the parts of Visual C++'s ctype.h and wctype.h that are missing from Wine's.
#pragma once

#include_next <ctype.h>

#include <corecrt.h>

#ifdef __cplusplus
extern "C" {
#endif

_ACRTIMP int __cdecl _islower_l(int, _locale_t);
_ACRTIMP int __cdecl _isdigit_l(int, _locale_t);
_ACRTIMP int __cdecl _isxdigit_l(int, _locale_t);
_ACRTIMP int __cdecl _isupper_l(int, _locale_t);
_ACRTIMP int __cdecl _iswcntrl_l(wint_t, _locale_t);
_ACRTIMP int __cdecl _iswxdigit_l(wint_t, _locale_t);
_ACRTIMP const unsigned short* __cdecl __pctype_func(void);

#ifdef __cplusplus
}
#endif
