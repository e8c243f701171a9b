// File searches, the access check and the working directory.
#include "support/test.h"

#include <cerrno>
#include <io.h>

namespace {

namespace fs = std::filesystem;
using namespace testing_support;

/// The working directory of these tests: a folder with a few files.
class Files : public testing::Test
{
protected:
    Files()
    {
        writeFile(folder / "A.dll", "abc");
        writeFile(folder / "two.x.dll", "");
        writeFile(folder / "locked.txt", "x");
        fs::permissions(folder / "locked.txt", fs::perms::owner_read);
        fs::create_directories(folder / "Sub" / "empty");
        fs::current_path(folder);
    }
    ~Files() override
    {
        fs::permissions(folder / "locked.txt", fs::perms::all);
        fs::current_path(scratchFolder());
    }

    const fs::path folder = scratchFolder() / "files";
    const std::string full = windowsPath(folder);
};

/// The first match or the error.
std::string firstOf(const std::string& pattern)
{
    WIN32_FIND_DATAW found = {};
    HANDLE search = FindFirstFileW(Wide(pattern), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return "error " + std::to_string(GetLastError());
    }
    EXPECT_NE(FindClose(search), FALSE);
    return utf8(found.cFileName);
}

TEST_F(Files, AreFoundByPattern)
{
    const std::pair<const char*, std::vector<std::string>> rows[] = {
        {"A.dll", {"*.dll", full + "\\*.DLL", full + "/a.???", "A.dll.", "sub\\..\\*.dll"}},
        {"two.x.dll", {"t*.*.d*"}},
        {".", {"sub\\*"}},
        {"error 2", {"??.dll", "sub\\", "sub\\*.x", "Z:\\"}},
        {"error 3", {"none\\*", "Q:\\*", ""}},
    };
    for (const auto& [expected, patterns] : rows) {
        for (const std::string& pattern : patterns) {
            EXPECT_EQ(firstOf(pattern), expected) << pattern;
        }
    }
}

TEST_F(Files, AreChecked)
{
    const std::tuple<int, int, std::vector<std::string>> rows[] = {
        {0, 0, {"a.DLL", full + "/sub/EMPTY", full + "\\none\\..\\a.dll"}},
        {0, ENOENT, {"A.dll\\", "none", "", "Q:\\x", full + "\\" + std::string(300, 'x')}},
        {2, EACCES, {"locked.txt"}},
        {4, 0, {"locked.txt", full + "\\SUB\\"}},
        {4, ENOENT, {"A.dll\\x"}},
        {6, 0, {"A.dll"}},
    };
    for (const auto& [mode, error, paths] : rows) {
        for (const std::string& path : paths) {
            errno = 0;
            const int result = _waccess(Wide(path), mode);
            EXPECT_EQ(result == 0 ? 0 : errno, error) << path << ", " << mode;
        }
    }
}

TEST_F(Files, TheWorkingDirectoryIsSetAndRead)
{
    wchar_t buffer[1024] = {};
    const auto length = static_cast<DWORD>(full.size());
    EXPECT_EQ(GetCurrentDirectoryW(length + 1, buffer), length);
    EXPECT_EQ(GetCurrentDirectoryW(length, buffer), length + 1);
    const std::tuple<std::string, DWORD, std::string> rows[] = {
        {"Sub\\", 0, full + "\\Sub"},
        {"..", 0, full},
        {".\\Sub/empty", 0, full + "\\Sub\\empty"},
        {full, 0, full},
        {"A.dll", ERROR_DIRECTORY, full},
        {"none", ERROR_FILE_NOT_FOUND, full},
        {"none\\x", ERROR_PATH_NOT_FOUND, full},
        {"", ERROR_INVALID_NAME, full},
        {"Z:\\", 0, "Z:\\"},
    };
    for (const auto& [path, error, then] : rows) {
        SCOPED_TRACE(path);
        SetLastError(0);
        EXPECT_EQ(SetCurrentDirectoryW(Wide(path)) != FALSE, error == 0);
        EXPECT_EQ(GetLastError(), error);
        EXPECT_NE(GetCurrentDirectoryW(1024, buffer), 0U);
        EXPECT_EQ(utf8(buffer), then);
    }
}

} // namespace
