// Errors of the host as the system's error codes.
#pragma once

#include <windows.h>

namespace winhost {

/// The system's number of an error of the host's, an errno.
DWORD errorOf(int hostError, DWORD otherwise);

} // namespace winhost
