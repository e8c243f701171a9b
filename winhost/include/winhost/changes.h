// Registry transactions that span many calls. Windows does not have these functions. A program that also runs
// on Windows looks them up with GetProcAddress(GetModuleHandleW(L"advapi32.dll"), ...). If the functions are
// missing, the program makes its changes without a transaction.
#pragma once

#include <windows.h>

/// Begins a transaction that includes the registry calls of all threads of the process. Until it ends, other
/// processes see none of the changes and cannot write, so it should be short. Returns ERROR_LOCK_FAILED if
/// another process holds the write lock for 5 s, and ERROR_INVALID_PARAMETER if a transaction has already
/// begun.
WINHOST_API LSTATUS winhostBeginRegistryChanges();

/// Commits or undoes the transaction. Returns ERROR_CANTWRITE if a disk error, a lack of memory, a fork or a
/// move of the store has already undone it, and ERROR_INVALID_PARAMETER if no transaction has begun.
WINHOST_API LSTATUS winhostEndRegistryChanges(BOOL keep);
