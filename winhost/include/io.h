// The C runtime's wide file access check.
#pragma once

#include "winhost/api.h"

WINHOST_API int _waccess(const wchar_t* path, int mode);
