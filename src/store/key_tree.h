// Removing a key with everything below it.
#pragma once

#include <windows.h>

namespace uinfo {

/// Removes the keys one by one, children first. 1 when the key is gone (also when it never was), 0 when it is
/// not, or when its path or that of a key below it would pass 519 characters; what was removed until then
/// stays removed.
int deleteKeyTree(HKEY parent, const wchar_t* subKey);

/// The same by the system's own RegDeleteTreeW where velaGetWindowsVersion() tells of one and it is found.
bool removeKeyTree(HKEY parent, const wchar_t* subKey);

} // namespace uinfo
