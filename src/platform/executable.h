// The process's executable.
#pragma once

#include "platform/text.h"

namespace uinfo {

/// Reads the executable's full path into the first size characters of out. False, with out as the system left
/// it, when it cannot be read or does not fit; clears the thread's last error first, to tell the latter.
bool executablePath(wchar_t* out, unsigned long size);

/// The same, cut after its last separator.
bool executableFolder(BoundedText& out, unsigned long size);

/// The same, but a path that does not fit is taken as it is cut, and the thread's last error left alone.
bool executableFolderOrCut(BoundedText& out, unsigned long size);

} // namespace uinfo
