// The program folder, language resource folders and libraries, and the help viewer.
#include "support/test.h"

#include <climits>

namespace {

using namespace testing_support;

using PathFunction = unsigned long (*)(wchar_t*, unsigned long);

const PathFunction programPath = GetProgramPath;
const PathFunction resourcePath = GetResourceDllPath; // of "unknown", before start-up
constexpr PathFunction helpPath = [](wchar_t* out, unsigned long size) {
    return static_cast<unsigned long>(GetHelpFilePath(out, static_cast<long>(size)));
};

/// What a path function gives for a size: the path, "untouched" or "failed".
std::string pathOf(PathFunction function, unsigned long size)
{
    std::vector<wchar_t> buffer(3000, L'#');
    const unsigned long length = function(buffer.data(), size);
    EXPECT_EQ(std::count(buffer.begin() + static_cast<long>(size), buffer.end(), L'#'), 3000 - size);
    if (length == 0) {
        return buffer[0] == L'#' ? "untouched" : "failed";
    }
    std::string path = utf8(buffer.data());
    EXPECT_EQ(path.size(), length);
    return path;
}

TEST(Program, PathsNeedTheirSizeAndTheFolderIsReadOnce)
{
    {
        const Patch none = pretendExecutable("");
        EXPECT_EQ(pathOf(programPath, 100), "untouched");
    }
    const Patch pretended = pretendExecutable("C:\\Apps\\Cad\\cad.exe");
    for (unsigned long size = 0; size < 30; ++size) {
        SCOPED_TRACE(size);
        SetLastError(77);
        EXPECT_EQ(pathOf(programPath, size), size >= 13 ? "C:\\Apps\\Cad\\" : "untouched");
        EXPECT_EQ(GetLastError(), 77U);
        const std::string failure = size == 0 ? "untouched" : "failed";
        EXPECT_EQ(pathOf(resourcePath, size), size >= 22 ? "C:\\Apps\\Cad\\unknown" : failure);
        EXPECT_EQ(pathOf(helpPath, size), size >= 24 ? "C:\\Apps\\Cad\\RKHelp.exe" : "untouched");
    }
    const Patch later = pretendExecutable("C:\\Later\\cad.exe");
    EXPECT_EQ(pathOf(programPath, 100), "C:\\Apps\\Cad\\");
    wchar_t out[40] = L"#";
    EXPECT_EQ(GetHelpFilePath(out, LONG_MIN) + GetHelpFilePath(nullptr, 1024), 0);
    EXPECT_EQ(GetProgramPath(nullptr, 100) + GetResourceDllPath(L"x", nullptr, 1024), 0UL);
    EXPECT_EQ(GetResourceDllPath(nullptr, out, 40) + GetResourceDllPath(L"", out, 40), 0UL);
    EXPECT_EQ(utf8(out), "#");
    EXPECT_EQ(GetResourceDllPath(L"de", out, 40), 11UL);
    EXPECT_EQ(utf8(out), "C:\\Later\\de");
}

TEST(Program, PathsHaveTheLimitsOfThePlatform)
{
    const auto folder = [](std::size_t length) { return "C:\\" + std::string(length - 4, 'x') + '/'; };
    for (const std::size_t length : {252U, 253U}) { // a joined path has at most 259 characters
        const std::string joined = "C:\\" + std::string(length - 4, 'x') + '\\';
        const Patch pretended = pretendExecutable(joined + "cad.exe");
        EXPECT_EQ(pathOf(resourcePath, 1024), length == 252 ? joined + "unknown" : "failed");
    }
    for (const std::size_t length : {1015U, 1016U}) { // with "cad.exe" at most 1022 characters are read
        const Patch pretended = pretendExecutable(folder(length) + "cad.exe");
        EXPECT_EQ(pathOf(helpPath, 1100), length == 1015 ? folder(length) + "RKHelp.exe" : "untouched");
    }
    const Patch pretended =
        pretendExecutable(folder(1004) + std::string(100, 'y')); // cut, and the cut not noticed
    EXPECT_EQ(pathOf(programPath, 1005), folder(1004));
}

TEST(Program, ResourceLibrariesAreLoadedFromTheFolderThenByName)
{
    std::vector<std::string> tried;
    const auto load = intercept<"LoadLibraryW", decltype(LoadLibraryW)>([&](auto real, LPCWSTR name) {
        tried.push_back(utf8(name));
        return real(name);
    });
    const auto loadEx = intercept<"LoadLibraryExW", decltype(LoadLibraryExW)>(
        [&](auto, LPCWSTR name, HANDLE file, DWORD flags) {
            tried.push_back(utf8(name) + ' ' + std::to_string(flags) + (file == &tried ? " file" : ""));
            return HMODULE{};
        });
    using Names = std::vector<std::string>;
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const std::string folder = windowsPath(thisProgram().parent_path()) + "\\en-US\\";

    EXPECT_NE(LoadResourceDll(L"RkUInfoRes.dll"), nullptr);
    EXPECT_EQ(std::exchange(tried, {}), Names{folder + "RkUInfoRes.dll"});
    EXPECT_NE(LoadResourceDll(Wide(libraryModule)), nullptr); // beside the program
    EXPECT_EQ(std::exchange(tried, {}), (Names{folder + libraryModule, libraryModule}));
    EXPECT_EQ(LoadResourceDll(L"none.dll"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    tried.clear();
    EXPECT_EQ(LoadResourceDllEx(L"none.dll", &tried, 0x22), nullptr);
    EXPECT_EQ(std::exchange(tried, {}), (Names{folder + "none.dll 34 file", "none.dll 34 file"}));

    const Wide tooLong(std::string(260 - folder.size(), 'x'));
    for (const wchar_t* const name : {L"", static_cast<const wchar_t*>(nullptr), +tooLong}) {
        EXPECT_EQ(LoadResourceDll(name), nullptr);
        EXPECT_EQ(LoadResourceDllEx(name, nullptr, 2), nullptr);
    }
    const Patch none = pretendExecutable("");
    EXPECT_EQ(LoadResourceDll(L"RkUInfoRes.dll"), nullptr);
    EXPECT_EQ(tried, Names{});
}

} // namespace
