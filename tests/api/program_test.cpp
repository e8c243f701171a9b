// The program folder, language resource folders and libraries, and the help viewer.
#include "support/test.h"

#include <array>
#include <climits>

namespace {

/// Calls a path function with a buffer of `size` characters, and returns the result of textOf().
template <typename Size>
std::string pathOf(Size (*function)(wchar_t*, Size), int size)
{
    return textOf([=](wchar_t* out) {
        out[size] = L'!';
        const Size length = function(out, static_cast<Size>(size));
        EXPECT_EQ(std::exchange(out[size], L'\0'), L'!');
        return length;
    });
}

constexpr char untouched[] = "failed: ?";

std::string folder(std::size_t length)
{
    return "C:\\" + std::string(length - 4, 'x') + '\\';
}

TEST(ProgramPaths, NeedRoomAndReadTheFolderOnce)
{
    for (const char* const unknown : {"", "cad.exe"}) { // the path cannot be read, or contains no folder
        const Patch pretended = pretendExecutable(unknown);
        EXPECT_EQ(pathOf(GetProgramPath, 100), untouched);
    }
    const Patch pretended = pretendExecutable("C:\\Apps\\Cad\\cad.exe");
    for (int size = 1; size < 30; ++size) {
        SCOPED_TRACE(size);
        SetLastError(77);
        EXPECT_EQ(pathOf(GetProgramPath, size), size >= 13 ? "C:\\Apps\\Cad\\" : untouched);
        EXPECT_EQ(GetLastError(), 77U);
        EXPECT_EQ(pathOf(GetHelpFilePath, size), size >= 24 ? "C:\\Apps\\Cad\\RKHelp.exe" : untouched);
        const std::string resources = pathOf<unsigned long>(GetResourceDllPath, size); // before start-up
        EXPECT_EQ(resources, size >= 22 ? "C:\\Apps\\Cad\\unknown" : "failed: " + resources.substr(8));
    }
    const Patch later = pretendExecutable("C:\\Later\\cad.exe");
    EXPECT_EQ(pathOf(GetProgramPath, 100), "C:\\Apps\\Cad\\");
    wchar_t out[40] = L"#";
    EXPECT_EQ(GetProgramPath(out, 0) + GetProgramPath(nullptr, 100) + GetResourceDllPath(out, 0), 0UL);
    EXPECT_EQ(GetHelpFilePath(out, 0) + GetHelpFilePath(out, LONG_MIN) + GetHelpFilePath(nullptr, 1024), 0);
    EXPECT_EQ(GetResourceDllPath(nullptr, out, 40) + GetResourceDllPath(L"", out, 40), 0UL);
    EXPECT_EQ(GetResourceDllPath(L"x", nullptr, 1024), 0UL);
    EXPECT_EQ(utf8(out), "#");
    EXPECT_EQ(GetResourceDllPath(L"de", out, 40), 11UL);
    EXPECT_EQ(utf8(out), "C:\\Later\\de");
}

TEST(ProgramPaths, HaveTheLimitsOfThePlatform)
{
    for (const std::size_t length : {252U, 253U}) { // a joined path has at most 259 characters
        const Patch pretended = pretendExecutable(folder(length) + "cad.exe");
        EXPECT_EQ(GetResourceDllPath(std::array<wchar_t, 1024>().data(), 1024), length == 252 ? 259U : 0U);
    }
    for (const std::size_t length : {1015U, 1016U}) { // the path can have at most 1022 characters
        const Patch pretended = pretendExecutable(folder(length) + "cad.exe");
        wchar_t out[1100] = L"#";
        EXPECT_EQ(GetHelpFilePath(out, 1100), length == 1015 ? 1025 : 0);
        EXPECT_EQ(utf8(out), length == 1015 ? folder(length) + "RKHelp.exe" : "#");
    }
}

TEST(LoadResourceDll, TriesTheLanguageFolderThenTheBareName)
{
    std::string tried;
    const auto load = intercept<"LoadLibraryW", decltype(LoadLibraryW)>([&](auto real, LPCWSTR name) {
        tried += utf8(name) + '|';
        return real(name);
    });
    const auto loadEx = intercept<"LoadLibraryExW", decltype(LoadLibraryExW)>(
        [&](auto, LPCWSTR name, HANDLE file, DWORD flags) {
            tried += utf8(name) + ' ' + std::to_string(flags) + (file == &tried ? " file|" : "|");
            return HMODULE{};
        });
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const std::string folder = windowsPath(thisProgram().parent_path()) + "\\en-US\\";

    EXPECT_NE(LoadResourceDll(L"RkUInfoRes.dll"), nullptr);
    EXPECT_EQ(std::exchange(tried, ""), folder + "RkUInfoRes.dll|");
    EXPECT_NE(LoadResourceDll(Wide(libraryModule)), nullptr); // beside the program
    EXPECT_EQ(std::exchange(tried, ""), folder + libraryModule + '|' + libraryModule + '|');
    EXPECT_EQ(LoadResourceDllEx(L"none.dll", &tried, 0x22), nullptr);
    EXPECT_EQ(std::exchange(tried, ""), folder + "none.dll 34 file|none.dll 34 file|");

    const Wide tooLong(std::string(260 - folder.size(), 'x'));
    for (const wchar_t* const name : {L"", static_cast<const wchar_t*>(nullptr), +tooLong}) {
        EXPECT_EQ(LoadResourceDll(name), nullptr);
        EXPECT_EQ(LoadResourceDllEx(name, nullptr, 2), nullptr);
    }
    const Patch none = pretendExecutable("");
    EXPECT_EQ(LoadResourceDll(L"RkUInfoRes.dll"), nullptr);
    EXPECT_EQ(tried, "");
}

} // namespace
