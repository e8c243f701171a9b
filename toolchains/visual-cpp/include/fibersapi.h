// Includes windows.h, in which Wine declares the functions of this header that libc++ uses.
#pragma once

#include <windows.h>
