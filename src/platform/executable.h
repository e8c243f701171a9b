// The process's executable.
#pragma once

#include "platform/text.h"

namespace uinfo {

/// Reads the executable's full path into the first size characters of out. False if it cannot be read or does
/// not fit; out then holds what the system wrote. Clears the thread's last error, to detect the latter.
bool executablePath(wchar_t* out, unsigned long size);

/// Reads the folder of that path, with its last separator.
bool executableFolder(BoundedText& out, unsigned long size);

/// The same, but accepts a path that the system truncated, and leaves the thread's last error as it was.
bool executableFolderOrCut(BoundedText& out, unsigned long size);

} // namespace uinfo
