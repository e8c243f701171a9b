// One transaction of the registry over many calls. Windows has no such functions. A program that also runs on
// Windows looks them up with GetProcAddress(GetModuleHandleW(L"advapi32.dll"), ...), and works without them.
#pragma once

#include <windows.h>

/// Begins a transaction of all registry calls of the process, in every thread. Until it ends, other processes
/// see none of the changes and cannot write, so it should be short. Returns ERROR_LOCK_FAILED if another
/// process holds the write lock for 5 s, and ERROR_INVALID_PARAMETER if a transaction has already begun.
WINHOST_API LSTATUS winhostBeginRegistryChanges();

/// Commits or undoes the transaction. Returns ERROR_CANTWRITE if a disk error, a fork or a move of the store
/// has already undone it, and ERROR_INVALID_PARAMETER if no transaction has begun.
WINHOST_API LSTATUS winhostEndRegistryChanges(BOOL keep);
