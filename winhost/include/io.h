// Declares _waccess.
#pragma once

#include "winhost/api.h"

WINHOST_API int _waccess(const wchar_t* path, int mode);
