// The compiler includes this file before each source file of libc++.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#undef DeleteFile
#define SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE 2

#include <ctype.h>
#include <stdlib.h>
#include <time.h>
#include <wchar.h>

extern "C" __declspec(dllimport) int __cdecl wcrtomb_s(size_t*, char*, size_t, wchar_t, mbstate_t*);
extern "C" __declspec(dllimport) size_t
    __cdecl _strftime_l(char*, size_t, const char*, const struct tm*, _locale_t);
