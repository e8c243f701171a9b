// The program's own definitions of the recorded functions come first in every module's symbol lookup.
#include "support/load_recorder.h"

#include <RkOsBase.h>
#include <shlobj.h>
#include <windows.h>

#include <dlfcn.h>

using testing_support::recordedCalls;

testing_support::LoadRecorder::LoadRecorder() = default;

namespace {

/// Records a call and gives the function that the name stands for without this program.
template <typename Function>
Function* recorded(const char* name)
{
    recordedCalls.emplace_back(name);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

DWORD GetCurrentDirectoryW(DWORD size, LPWSTR path)
{
    recordedCalls.emplace_back(__func__);
    return testing_support::pretendWorkingDirectory(size, path);
}

BOOL SetCurrentDirectoryW(LPCWSTR path)
{
    return recorded<decltype(SetCurrentDirectoryW)>(__func__)(path);
}

HRESULT SHGetFolderPathW(HWND owner, INT folder, HANDLE token, DWORD flags, LPWSTR path)
{
    return recorded<decltype(SHGetFolderPathW)>(__func__)(owner, folder, token, flags, path);
}

BOOL DisableThreadLibraryCalls(HMODULE module)
{
    return recorded<decltype(DisableThreadLibraryCalls)>(__func__)(module);
}

BOOL FreeLibrary(HMODULE module)
{
    return recorded<decltype(FreeLibrary)>(__func__)(module);
}

LSTATUS RegOpenKeyExW(HKEY parent, LPCWSTR path, DWORD options, REGSAM access, PHKEY key)
{
    return recorded<decltype(RegOpenKeyExW)>(__func__)(parent, path, options, access, key);
}

RkLocker::RkLocker()
{
    recorded<void(RkLocker*)>("_ZN8RkLockerC1Ev")(this);
}

RkLocker::~RkLocker()
{
    recorded<void(RkLocker*)>("_ZN8RkLockerD1Ev")(this);
}
