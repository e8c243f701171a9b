// Removes Wine's macro open, which is also the name of a member function in the C++ library.
#pragma once

#include_next <io.h>

#undef open
