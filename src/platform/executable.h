// The path of the process's executable.
#pragma once

#include "platform/text.h"

namespace uinfo {

/// Reads the executable's full path into `out`, a buffer of `size` characters. Returns false if the path
/// cannot be read or does not fit; out may then contain a truncated path. Clears the thread's last error, so
/// that truncation can be detected.
bool executablePath(wchar_t* out, unsigned long size);

/// Reads the path of the executable's folder, including the last separator. Fails if executablePath fails;
/// out is then empty. Clears the thread's last error.
bool executableFolder(BoundedText& out, unsigned long size);

/// Works like executableFolder, but accepts a truncated path and preserves the thread's last error. On
/// failure, the content of out is unspecified.
bool executableFolderOrCut(BoundedText& out, unsigned long size);

} // namespace uinfo
