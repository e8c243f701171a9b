// PathAppendW and PathRemoveFileSpecW.
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlwapi.h>

#include <algorithm>
#include <string>

namespace {

using namespace testing_support;

struct PathStorage
{
    explicit PathStorage(const std::string& path)
    {
        const Wide wide(path);
        std::copy_n(static_cast<const wchar_t*>(wide), wide.length() + 1, text);
    }

    wchar_t text[600] = {};
};

std::string appended(const std::string& path, const std::string& more)
{
    PathStorage storage(path);
    return PathAppendW(storage.text, Wide(more)) != FALSE ? utf8(storage.text)
                                                          : "failed, " + utf8(storage.text);
}

std::string withoutFileSpec(const std::string& path)
{
    PathStorage storage(path);
    return PathRemoveFileSpecW(storage.text) != FALSE ? utf8(storage.text) : "same, " + utf8(storage.text);
}

TEST(Path, AppendJoinsAndCanonicalises)
{
    const struct
    {
        const char* path;
        const char* more;
        const char* expected;
    } cases[] = {
        {R"(Z:\a)", "b", R"(Z:\a\b)"},
        {R"(Z:\a\)", R"(\b)", R"(Z:\a\b)"},
        {R"(Z:\a)", "", R"(Z:\a)"},
        {R"(Z:)", "b", R"(Z:\b)"},
        {R"(Z:\)", "b", R"(Z:\b)"},
        {"", R"(\b)", "b"},
        {"a", "b", R"(a\b)"},
        {R"(Z:\a)", R"(..\b)", R"(Z:\b)"},
        {R"(Z:\a)", R"(..\..\..\b)", R"(Z:\b)"},
        {R"(Z:\a)", R"(.\b)", R"(Z:\a\b)"},
        {R"(Z:\a)", R"(b\.\c)", R"(Z:\a\b\c)"},
        {R"(Z:\a)", R"(b\..)", R"(Z:\a)"},
        {R"(Z:\a)", "..", R"(Z:\)"},
        {R"(Z:\a\..\c)", "b", R"(Z:\c\b)"},
        {R"(a\b)", R"(..\..\..\c)", R"(\c)"},
        {R"(..\x)", "b", R"(..\x\b)"},
        {R"(\\srv\sh)", R"(..\..\b)", R"(\\srv\b)"},
        {R"(Z:\a)", R"(b\)", R"(Z:\a\b\)"},
        {R"(Z:\a\\c)", "b", R"(Z:\a\\c\b)"},
        {R"(Z:\a)", "/b/c", R"(Z:\a\/b/c)"},
        {R"(Z:\a)", "b.. ", R"(Z:\a\b.. )"},
        {R"(Z:\a)", R"(C:\x)", R"(C:\x)"},
        {R"(Z:\a)", R"(\\srv\x)", R"(\\srv\x)"},
        {R"(\\?\Z:\a)", "b", R"(\\?\Z:\a\b)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(appended(c.path, c.more), c.expected) << c.path << " and " << c.more;
    }
}

TEST(Path, AppendRefusesWhatDoesNotFit)
{
    const std::string folder = R"(Z:\)" + std::string(100, 'a');
    const std::string longest = std::string(259 - folder.size() - 1, 'b');
    EXPECT_EQ(appended(folder, longest), folder + '\\' + longest);
    EXPECT_EQ(appended(folder, longest + "b"), "failed, ");
    EXPECT_EQ(appended(R"(Z:\)" + std::string(400, 'a'), R"(..\b)"), "failed, ");
    PathStorage storage("Z:\\a");
    EXPECT_EQ(PathAppendW(storage.text, nullptr), FALSE);
    EXPECT_EQ(utf8(storage.text), "Z:\\a");
    EXPECT_EQ(PathAppendW(nullptr, L"b"), FALSE);
}

TEST(Path, RemoveFileSpecCutsAtTheLastBackslash)
{
    const struct
    {
        const char* path;
        const char* expected;
    } cases[] = {
        {R"(Z:\a\b)", R"(Z:\a)"},
        {R"(Z:\a\)", R"(Z:\a)"},
        {R"(Z:\a)", R"(Z:\)"},
        {R"(Z:\)", R"(same, Z:\)"},
        {"Z:", "same, Z:"},
        {"Z:a", "Z:"},
        {"a", ""},
        {"", "same, "},
        {R"(\)", R"(same, \)"},
        {R"(\a)", R"(\)"},
        {R"(\\srv\sh)", R"(\\srv)"},
        {R"(\\srv)", R"(\\)"},
        {R"(Z:\a\\b)", R"(Z:\a\)"},
        {R"(Z:\\a)", R"(Z:\)"},
        {"Z:/a/b", "Z:"},
        {R"(Z:/a\b)", "Z:/a"},
        {R"(Z:\a/b)", R"(Z:\)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(withoutFileSpec(c.path), c.expected) << c.path;
    }
    const std::string folder = R"(Z:\)" + std::string(400, 'a');
    EXPECT_EQ(withoutFileSpec(folder + R"(\b)"), folder);
    EXPECT_EQ(PathRemoveFileSpecW(nullptr), FALSE);
}

} // namespace
