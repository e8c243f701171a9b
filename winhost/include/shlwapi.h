// Path functions.
#pragma once

#include "windows.h"

WINHOST_API BOOL PathAppendW(LPWSTR path, LPCWSTR more);
WINHOST_API BOOL PathRemoveFileSpecW(LPWSTR path);
