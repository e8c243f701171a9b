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

// Blocks of the C heap cross module borders: all modules share the one of the shared C runtime.
#if defined(_MSC_VER)
#if !defined(_DLL)
#error "RkUInfo needs the shared C runtime: compile with /MD (or /MDd, with libraries built so)"
#elif defined(_DEBUG)
#pragma detect_mismatch("RkUInfo C runtime", "MDd")
#else
#pragma detect_mismatch("RkUInfo C runtime", "MD")
#endif
#endif

// The handle types of <windows.h>, named without including it.
struct HKEY__;
struct HINSTANCE__;
