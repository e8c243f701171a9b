// Wine's io.h without its macro for open, which is also a member function's name in the C++ library.
#pragma once

#include_next <io.h>

#undef open
