// What the module under test calls while it is loaded and unloaded: for a program that is not linked to it.
#pragma once

#include "support/text.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

namespace testing_support {

/// The calls in order: of the working directory, SHGetFolderPathW, DisableThreadLibraryCalls, FreeLibrary,
/// RegOpenKeyExW and the constructor and destructor of RkLocker. On the host the program's own calls are
/// recorded too.
inline std::vector<std::string> recordedCalls;

/// What the module is told as the working directory.
inline std::string pretendedWorkingDirectory;

inline DWORD pretendWorkingDirectory(DWORD size, LPWSTR path)
{
    const Wide pretended(pretendedWorkingDirectory);
    if (pretended.length() < size) {
        std::copy_n(static_cast<const wchar_t*>(pretended), pretended.length() + 1, path);
    }
    return static_cast<DWORD>(pretended.length());
}

/// Records from its making on.
struct LoadRecorder
{
    LoadRecorder();
};

} // namespace testing_support
