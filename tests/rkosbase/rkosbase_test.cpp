// What the base library gives but its lock and the crash recorder: exceptions and the version of Windows.
#include "support/test.h"

#include <cstring>

namespace {

const char* const baseModule = std::strstr(libraryModule, ".dll") ? "RkOsBase.dll" : "libRkOsBase.so";

TEST(RkOsBase, ExceptionsCutTheirTexts)
{
    const Wide longText(std::string(300, 't'));
    const std::string longest(259, 't');
    const auto texts = [](const RkException& exception) {
        return utf8(exception.text()) + '|' + utf8(exception.description()) +
               std::to_string(exception.number());
    };
    EXPECT_EQ(texts(RkException(nullptr, -1)), "|-1");
    EXPECT_EQ(texts(RkException(longText, -1)), longest + '|' + longest + "-1");
    EXPECT_EQ(texts(RkExceptionWithMsg(L"a", 1, longText)), "a|" + longest + '1');
    EXPECT_EQ(texts(RkExceptionWithMsg(L"a", 1, nullptr)), "a|1");
}

TEST(RkOsBase, BothWindows8AreVersion8)
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
