// Reads the version of Windows.
#include "RkOsBase.h"

#include <windows.h>

namespace {

/// The structure that RtlGetVersion fills. The result of RtlGetVersion, unlike that of GetVersionExW, does
/// not depend on the program's manifest.
struct SystemVersion
{
    DWORD size;
    DWORD major;
    DWORD minor;
    DWORD build;
    DWORD platform;
    WCHAR servicePack[128];
};

using GetSystemVersion = LONG(WINAPI*)(SystemVersion*);

SystemVersion systemVersion()
{
    SystemVersion version = {sizeof version, 10, 0, 0, 0, {}}; // the result if RtlGetVersion does not exist
    if (const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll")) {
        const auto getSystemVersion = reinterpret_cast<GetSystemVersion>(
            reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion")));
        if (getSystemVersion != nullptr) {
            getSystemVersion(&version);
        }
    }
    return version;
}

} // namespace

int velaGetWindowsVersion(unsigned long* major, unsigned long* minor, unsigned long* build)
{
    const SystemVersion version = systemVersion();
    if (major != nullptr) {
        *major = version.major;
    }
    if (minor != nullptr) {
        *minor = version.minor;
    }
    if (build != nullptr) {
        *build = version.build;
    }
    // Windows 8 and 8.1 report versions 6.2 and 6.3.
    const bool isWindows8 = version.major == 6 && (version.minor == 2 || version.minor == 3);
    return isWindows8 ? 8 : static_cast<int>(version.major);
}
