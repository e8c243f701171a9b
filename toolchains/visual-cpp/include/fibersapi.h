// Wine's windows.h declares the functions that libc++ uses from this header.
#pragma once

#include <windows.h>
