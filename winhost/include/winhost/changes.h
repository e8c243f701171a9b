// Registry transactions that span many calls. Windows has no such transactions. A program that also runs on
// Windows looks up both functions with GetProcAddress(GetModuleHandleW(L"advapi32.dll"), ...). On Windows,
// where the look-up fails, the program makes its changes without a transaction.
#pragma once

#include <windows.h>

/// Begins a transaction that includes the registry calls of all threads of the process. A transaction
/// should be short: until it ends, other processes see none of the changes and cannot write. Returns
/// ERROR_LOCK_FAILED if another process holds the write lock for 5 s, and ERROR_INVALID_PARAMETER if a
/// transaction has already begun.
WINHOST_API LSTATUS winhostBeginRegistryChanges();

/// Commits or undoes the transaction. Returns ERROR_INVALID_PARAMETER if no transaction has begun. Returns
/// ERROR_CANTWRITE if the changes were lost because a write failed, memory ran out, the process forked, or
/// the store was moved.
WINHOST_API LSTATUS winhostEndRegistryChanges(BOOL keep);
