// File searches, the access check and the working directory.
#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <filesystem>
#include <string>

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
        writeFile(folder / "noext", "");
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
};

/// The first match, or the error.
std::string firstOf(const std::string& pattern, WIN32_FIND_DATAW* data = nullptr)
{
    WIN32_FIND_DATAW found = {};
    HANDLE search = FindFirstFileW(Wide(pattern), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return "error " + std::to_string(GetLastError());
    }
    EXPECT_NE(FindClose(search), FALSE);
    if (data != nullptr) {
        *data = found;
    }
    return utf8(found.cFileName);
}

TEST_F(Files, AreFoundByPattern)
{
    const std::string full = windowsPath(folder);
    const std::pair<std::string, const char*> cases[] = {
        {"*.dll", "A.dll"},       {full + "\\*.DLL", "A.dll"}, {full + "/a.???", "A.dll"},
        {"t*.*.d*", "two.x.dll"}, {"noext.*", "noext"},        {"??.dll", "error 2"},
        {"*.none", "error 2"},    {"a.dll", "A.dll"},          {"A.dll.", "A.dll"},
        {"SUB", "Sub"},           {"sub\\", "error 2"},        {"sub\\*", "."},
        {"sub\\*.x", "error 2"},  {"sub\\..\\*.dll", "A.dll"}, {"none\\*", "error 3"},
        {"Q:\\*", "error 3"},     {"Z:\\", "error 2"},         {"", "error 3"},
    };
    for (const auto& [pattern, expected] : cases) {
        EXPECT_EQ(firstOf(pattern), expected) << pattern;
    }
    WIN32_FIND_DATAW data = {};
    firstOf("a.dll", &data);
    EXPECT_EQ(data.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY), 0U);
    EXPECT_EQ(data.nFileSizeLow, 3U);
    firstOf("sub", &data);
    EXPECT_EQ(data.dwFileAttributes, DWORD{FILE_ATTRIBUTE_DIRECTORY});
    firstOf("locked.txt", &data);
    EXPECT_NE(data.dwFileAttributes & FILE_ATTRIBUTE_READONLY, 0U);
    EXPECT_EQ(FindClose(INVALID_HANDLE_VALUE), FALSE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(Files, AreChecked)
{
    const std::string full = windowsPath(folder);
    const struct
    {
        std::string path;
        int mode;
        int error;
    } cases[] = {
        {"a.DLL", 0, 0},
        {"A.dll", 6, 0},
        {"locked.txt", 4, 0},
        {"locked.txt", 2, EACCES},
        {"locked.txt", 6, EACCES},
        {"sub", 2, 0},
        {full + "\\SUB\\", 4, 0},
        {full + "\\none\\..\\a.dll", 0, 0},
        {full + "/sub/EMPTY", 0, 0},
        {"A.dll\\", 0, ENOENT},
        {"none", 0, ENOENT},
        {"none\\x", 4, ENOENT},
        {"A.dll\\x", 4, ENOENT},
        {"", 0, ENOENT},
        {"Q:\\x", 0, ENOENT},
        {"Z:", 0, 0},
        {full + "\\" + std::string(300, 'x'), 0, ENOENT},
    };
    for (const auto& c : cases) {
        errno = 0;
        const int result = _waccess(Wide(c.path), c.mode);
        EXPECT_EQ(result == 0 ? 0 : errno, c.error) << c.path << ", " << c.mode;
    }
}

TEST_F(Files, TheWorkingDirectoryIsSetAndRead)
{
    const std::string full = windowsPath(folder);
    wchar_t buffer[1024] = {};
    const auto current = [&] { return GetCurrentDirectoryW(1024, buffer) != 0 ? utf8(buffer) : ""; };
    EXPECT_EQ(current(), full);
    const auto length = static_cast<DWORD>(full.size());
    EXPECT_EQ(GetCurrentDirectoryW(length + 1, buffer), length);
    EXPECT_EQ(GetCurrentDirectoryW(length, buffer), length + 1);
    EXPECT_EQ(GetCurrentDirectoryW(0, nullptr), length + 1);

    const struct
    {
        std::string path;
        DWORD error;
        std::string then;
    } cases[] = {
        {"Sub\\", 0, full + "\\Sub"},
        {"..", 0, full},
        {".\\Sub/empty", 0, full + "\\Sub\\empty"},
        {full + "\\.", 0, full},
        {"A.dll", ERROR_DIRECTORY, full},
        {"none", ERROR_FILE_NOT_FOUND, full},
        {"none\\x", ERROR_PATH_NOT_FOUND, full},
        {"", ERROR_INVALID_NAME, full},
        {"Q:\\", ERROR_PATH_NOT_FOUND, full},
        {"Z:\\", 0, "Z:\\"},
    };
    for (const auto& c : cases) {
        SetLastError(0);
        EXPECT_EQ(SetCurrentDirectoryW(Wide(c.path)), c.error == 0 ? TRUE : FALSE) << c.path;
        EXPECT_EQ(GetLastError(), c.error) << c.path;
        EXPECT_EQ(current(), c.then) << c.path;
    }
}

} // namespace
