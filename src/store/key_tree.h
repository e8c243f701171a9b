// Removes a key with all its sub-keys.
#pragma once

#include <windows.h>

namespace uinfo {

/// Removes the keys one by one, children first. Returns 1 if the key was removed or did not exist, and 0 on
/// failure. Fails if the path of the key or of a sub-key exceeds 519 characters. Keys that were removed
/// before a failure stay removed.
int deleteKeyTree(HKEY parent, const wchar_t* subKey);

/// Removes the tree with RegDeleteTreeW if the system has that function and velaGetWindowsVersion() returns 8
/// or more, otherwise with deleteKeyTree.
bool removeKeyTree(HKEY parent, const wchar_t* subKey);

} // namespace uinfo
