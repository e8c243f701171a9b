// Registry keys that several iterators hold.
#pragma once

#include <windows.h>

namespace uinfo {

/// Adds an owner to a key that an iterator holds; null is ignored.
void shareKey(HKEY key);

/// Takes an owner away; the last one closes the key. Null is ignored.
void releaseKey(HKEY key);

/// Takes an owner away where there are several; the only one leaves the key open.
void abandonKey(HKEY key);

} // namespace uinfo
