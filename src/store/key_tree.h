// Removes a key with everything below it.
#pragma once

#include <windows.h>

namespace uinfo {

/// Removes the keys one by one, children first. Returns 1 if the key no longer exists or never did, 0 on
/// failure, for example because its path or that of a key below it exceeds 519 characters. Keys that were
/// removed before a failure stay removed.
int deleteKeyTree(HKEY parent, const wchar_t* subKey);

/// Removes the tree with RegDeleteTreeW if velaGetWindowsVersion() returns 8 or more and the system has that
/// function, otherwise like deleteKeyTree.
bool removeKeyTree(HKEY parent, const wchar_t* subKey);

} // namespace uinfo
