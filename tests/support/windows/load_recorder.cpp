// The loader tells of a module when its imports are bound and its entry point has not run: then they are
// patched.
#include "support/load_recorder.h"

#include "support/imports.h"

#include <shlobj.h>
#include <windows.h>
#include <winternl.h>

#include <optional>

namespace testing_support {

namespace {

struct Notification
{
    ULONG flags;
    const UNICODE_STRING* fullName;
    const UNICODE_STRING* baseName;
    void* base;
    ULONG size;
};
using Notified = void(CALLBACK*)(ULONG reason, const Notification* module, void* context);
using Register = NTSTATUS(NTAPI*)(ULONG flags, Notified notified, void* context, void** registration);
using Unregister = NTSTATUS(NTAPI*)(void* registration);

constexpr const char* names[] = {"SetCurrentDirectoryW", "SHGetFolderPathW", "DisableThreadLibraryCalls",
                                 "FreeLibrary",          "RegOpenKeyExW",    "_ZN8RkLockerC1Ev",
                                 "_ZN8RkLockerD1Ev"};

template <std::size_t Function> // each intercepted function needs a handler type of its own
struct Recording
{
    auto operator()(auto real, auto... arguments) const
    {
        recordedCalls.emplace_back(names[Function]);
        return real(arguments...);
    }
};

struct Pretending
{
    DWORD operator()(auto /*real*/, DWORD size, LPWSTR path) const
    {
        recordedCalls.emplace_back("GetCurrentDirectoryW");
        return pretendWorkingDirectory(size, path);
    }
};

struct Patches
{
    Intercept<decltype(GetCurrentDirectoryW), Pretending> m_current{
        libraryModule, "GetCurrentDirectoryW", {}};
    Intercept<decltype(SetCurrentDirectoryW), Recording<0>> m_set{libraryModule, names[0], {}};
    Intercept<decltype(SHGetFolderPathW), Recording<1>> m_folder{libraryModule, names[1], {}};
    Intercept<decltype(DisableThreadLibraryCalls), Recording<2>> m_disable{libraryModule, names[2], {}};
    Intercept<decltype(FreeLibrary), Recording<3>> m_free{libraryModule, names[3], {}};
    Intercept<decltype(RegOpenKeyExW), Recording<4>> m_open{libraryModule, names[4], {}};
    Intercept<void(void*), Recording<5>> m_made{libraryModule, names[5], {}};
    Intercept<void(void*), Recording<6>> m_destroyed{libraryModule, names[6], {}};
};
std::optional<Patches> patches;

void CALLBACK notified(ULONG reason, const Notification* module, void* /*context*/)
{
    constexpr ULONG loaded = 1;
    if (utf8(module->baseName->Buffer) != libraryModule) {
        return;
    }
    if (reason == loaded) {
        patches.emplace();
    } else {
        patches.reset(); // the module is still mapped
    }
}

template <typename Function>
Function loaderFunction(const char* name)
{
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
}

} // namespace

LoadRecorder::LoadRecorder()
{
    loaderFunction<Register>("LdrRegisterDllNotification")(0, notified, nullptr, &m_registration);
}

LoadRecorder::~LoadRecorder()
{
    loaderFunction<Unregister>("LdrUnregisterDllNotification")(m_registration);
}

} // namespace testing_support
