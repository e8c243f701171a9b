// Converts the host's errors to Windows error codes.
#pragma once

#include <windows.h>

namespace winhost {

/// Returns the Windows error code for an errno, or `fallback` if there is none.
DWORD errorOf(int hostError, DWORD fallback);

} // namespace winhost
