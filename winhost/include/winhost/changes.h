// One transaction of the registry over many calls. Windows has no such functions: a program that runs there
// too finds them by name, GetProcAddress(GetModuleHandleW(L"advapi32.dll"), ...), and works without them.
#pragma once

#include <windows.h>

/// Begins a transaction of all registry calls of the process, in every thread. Until its end other processes
/// see none of the changes and cannot write, so it should be short. ERROR_LOCK_FAILED if another process
/// writes for 5 s; ERROR_INVALID_PARAMETER in a transaction.
WINHOST_API LSTATUS winhostBeginRegistryChanges();

/// Commits or undoes the transaction. ERROR_CANTWRITE if it was undone before, by an error of the disk, a
/// fork or a store that was moved; ERROR_INVALID_PARAMETER without a transaction.
WINHOST_API LSTATUS winhostEndRegistryChanges(BOOL keep);
