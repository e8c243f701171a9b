// Converts the host's errors to Windows error codes.
#pragma once

#include <windows.h>

namespace winhost {

/// Returns the Windows error code that corresponds to an errno, or `fallback` if no code does.
DWORD errorOf(int hostError, DWORD fallback);

} // namespace winhost
