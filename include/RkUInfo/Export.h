// SPDX-License-Identifier: MIT
// Exports and imports the library's names, and checks how a client is compiled.
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

#if !defined(__cpp_exceptions) && !defined(_CPPUNWIND)
#error "RkUInfo throws exceptions: compile with /EHsc, or without -fno-exceptions"
#endif

// Modules free heap blocks that other modules have allocated, so all modules of a process must share one C
// runtime. The library exports a function whose name identifies the runtime it was built for. Each object
// file of a client refers to the symbol for its own runtime, so linking fails if the runtimes differ. A
// program that does not link with the library must define RKUINFO_NOT_LINKED.
#if defined(_MSC_VER)
#if !defined(_NATIVE_WCHAR_T_DEFINED)
#error "RkUInfo exports functions that take wchar_t: compile without /Zc:wchar_t-"
#elif !defined(_DLL)
#error "RkUInfo needs the shared C runtime: compile with /MD, or with /MDd and the Debug libraries"
#elif defined(RKUINFO_NOT_IN_PACKAGE)
#error "This package of RkUInfo has no libraries for this configuration: install them, then configure again"
#elif defined(_DEBUG)
#define RKUINFO_BUILT_FOR RkUInfo_built_for_MDd
#pragma detect_mismatch("RkUInfo C runtime", "MDd")
#if !defined(RKUINFO_NOT_LINKED)
#pragma comment(linker, "/include:RkUInfo_built_for_MDd")
#endif
#else
#define RKUINFO_BUILT_FOR RkUInfo_built_for_MD
#pragma detect_mismatch("RkUInfo C runtime", "MD")
#if !defined(RKUINFO_NOT_LINKED)
#pragma comment(linker, "/include:RkUInfo_built_for_MD")
#endif
#endif
#endif

// The handle types of <windows.h>, declared without including that header.
struct HKEY__;
struct HINSTANCE__;
