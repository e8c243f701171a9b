// One transaction of the registry over many calls. No call of the system: a program that runs on Windows too
// asks for the functions by name, GetProcAddress(GetModuleHandleW(L"advapi32.dll"), ...), and does without
// where there are none.
#pragma once

#include <windows.h>

/// From here on the registry calls of all threads of the process are kept or undone together, and other
/// processes see none of them; they cannot write, so be quick. ERROR_LOCK_FAILED if another process writes
/// for 5 s. A second call before the end fails with ERROR_INVALID_PARAMETER.
WINHOST_API LSTATUS winhostBeginRegistryChanges();

/// Keeps all that was changed since the beginning, or undoes it. ERROR_CANTWRITE if an error of the disk, or
/// a fork, has undone it already; ERROR_INVALID_PARAMETER without a beginning.
WINHOST_API LSTATUS winhostEndRegistryChanges(BOOL keep);
