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

template <int Number> // each intercepted function needs a handler type of its own
struct Recording
{
    const char* name;

    auto operator()(auto real, auto... arguments) const
    {
        recordedCalls.emplace_back(name);
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

template <typename Function, int Number>
struct Recorded : Intercept<Function, Recording<Number>>
{
    explicit Recorded(const char* name) : Intercept<Function, Recording<Number>>(libraryModule, name, {name})
    {
    }
};

struct Patches
{
    Intercept<decltype(GetCurrentDirectoryW), Pretending> current{libraryModule, "GetCurrentDirectoryW", {}};
    Recorded<decltype(SetCurrentDirectoryW), 0> set{"SetCurrentDirectoryW"};
    Recorded<decltype(SHGetFolderPathW), 1> folder{"SHGetFolderPathW"};
    Recorded<decltype(DisableThreadLibraryCalls), 2> disable{"DisableThreadLibraryCalls"};
    Recorded<decltype(FreeLibrary), 3> free{"FreeLibrary"};
    Recorded<decltype(RegOpenKeyExW), 4> open{"RegOpenKeyExW"};
    Recorded<void(void*), 5> made{"_ZN8RkLockerC1Ev"};
    Recorded<void(void*), 6> destroyed{"_ZN8RkLockerD1Ev"};
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

} // namespace

LoadRecorder::LoadRecorder()
{
    using Register = NTSTATUS(NTAPI*)(ULONG flags, decltype(&notified), void* context, void** registration);
    void* const address =
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "LdrRegisterDllNotification"));
    void* registration = nullptr;
    reinterpret_cast<Register>(address)(0, notified, nullptr, &registration);
}

} // namespace testing_support
