// Registry keys that several iterators hold.
#pragma once

#include <windows.h>

namespace uinfo {

/// Makes target one more owner of a key that another iterator holds, and lets go of the key that it held;
/// either may be null. When memory for the count is missing it throws, and target keeps what it held.
void shareKey(HKEY& target, HKEY source);

/// Takes an owner away; the last one closes the key. Null is ignored.
void releaseKey(HKEY key);

/// Takes an owner away where there are several; the only one leaves the key open.
void abandonKey(HKEY key);

} // namespace uinfo
