// The Windows version, which determines how a key tree is removed.
#include "support/test.h"

#include <cstring>

namespace {

const char* const baseModule = std::strstr(libraryModule, ".dll") ? "RkOsBase.dll" : "libRkOsBase.so";

TEST(GetWindowsVersion, Returns8ForBothWindows8)
{
    static DWORD pretended[3]; // major, minor and build
    LONG(WINAPI* const fill)
    (DWORD*) = [](DWORD* version) -> LONG {
        std::memcpy(version + 1, pretended, sizeof pretended);
        return 0;
    };
    const Patch ntdll = intercept<"GetModuleHandleW", decltype(GetModuleHandleW)>(
        [](auto, auto) { return reinterpret_cast<HMODULE>(pretended); }, baseModule);
    const Patch call = intercept<"GetProcAddress", decltype(GetProcAddress)>(
        [=](auto, auto...) { return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(fill)); }, baseModule);
    for (const auto& [major, minor, result] :
         {std::tuple(5UL, 2UL, 5), {6UL, 1UL, 6}, {6UL, 2UL, 8}, {6UL, 3UL, 8}, {10UL, 2UL, 10}}) {
        pretended[0] = static_cast<DWORD>(major);
        pretended[1] = static_cast<DWORD>(minor);
        EXPECT_EQ(velaGetWindowsVersion(nullptr, nullptr, nullptr), result);
    }
}

} // namespace
