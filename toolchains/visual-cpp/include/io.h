// Undefines Wine's macro `open`, because the C++ library has a member function of that name.
#pragma once

#include_next <io.h>

#undef open
