// SPDX-License-Identifier: MIT
// How the library's names are exported and imported.
#pragma once

#if defined(_WIN32)
#if defined(RKUINFO_BUILD)
#define RKUINFO_API __declspec(dllexport)
#else
#define RKUINFO_API __declspec(dllimport)
#endif
#else
#define RKUINFO_API __attribute__((visibility("default")))
#endif

// The handle types of <windows.h>, named without including it.
struct HKEY__;
struct HINSTANCE__;
