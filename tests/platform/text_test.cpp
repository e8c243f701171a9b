// What works on texts alone: the comparison of names, and PathAppendW and PathRemoveFileSpecW.
#include "support/test.h"

#include <cstdint>
#include <numeric>
#include <shlwapi.h>

namespace {

using namespace testing_support;

int compareUnits(unsigned a, unsigned b)
{
    const auto first = static_cast<wchar_t>(a);
    const auto second = static_cast<wchar_t>(b);
    return CompareStringOrdinal(&first, 1, &second, 1, TRUE);
}

TEST(CompareStringOrdinal, ComparesByUnits)
{
    const std::tuple<const wchar_t*, const wchar_t*, int, BOOL, int> rows[] = {
        // of a length that counts terminators in, or -1: up to the terminator
        {L"a", L"A", -1, FALSE, CSTR_GREATER_THAN},
        {L"_", L"a", -1, TRUE, CSTR_GREATER_THAN}, // "_" lies between the cases
        {L"ab", L"abc", -1, TRUE, CSTR_LESS_THAN},
        {L"a\0b", L"a\0c", 3, FALSE, CSTR_LESS_THAN},
        {L"\x00DF", L"SS", -1, TRUE, CSTR_GREATER_THAN}, // one unit against one
        {nullptr, L"a", -1, FALSE, 0},
    };
    for (const auto& [a, b, length, ignoreCase, expected] : rows) {
        EXPECT_EQ(CompareStringOrdinal(a, length, b, length, ignoreCase), expected)
            << utf8(a) << " and " << utf8(b);
    }
}

TEST(CompareStringOrdinal, FoldsEveryUnitAsTheSystemDoes)
{
    std::vector<unsigned> units(0x10000);
    std::iota(units.begin(), units.end(), 0U);
    std::stable_sort(units.begin(), units.end(),
                     [](unsigned a, unsigned b) { return compareUnits(a, b) == CSTR_LESS_THAN; });
    std::uint32_t digest = 2166136261U; // of the order, and of where one group of equal units ends
    for (std::size_t i = 0; i < units.size(); ++i) {
        const bool startsGroup = i == 0 || compareUnits(units[i - 1], units[i]) != CSTR_EQUAL;
        digest = (digest ^ (units[i] * 2 + (startsGroup ? 1U : 0U))) * 16777619U;
    }
    EXPECT_EQ(digest, 2892543722U);
}

/// The path that a call leaves, behind "no " when it reports failure.
std::string changed(const std::string& path, auto change)
{
    wchar_t buffer[600] = {};
    const Wide wide(path);
    std::copy_n(static_cast<const wchar_t*>(wide), wide.length(), buffer);
    const bool reported = change(buffer) != FALSE;
    return (reported ? "" : "no ") + utf8(buffer);
}

std::string appended(const std::string& path, const std::string& more)
{
    return changed(path, [&](wchar_t* buffer) { return PathAppendW(buffer, Wide(more)); });
}

TEST(Path, AppendJoinsAndCanonicalises)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {R"(Z:\a)", "b", R"(Z:\a\b)"},
        {R"(Z:\a)", "", R"(Z:\a)"},
        {R"(Z:\a)", R"(..\..\b)", R"(Z:\b)"},
        {R"(Z:\a)", R"(b\.\c\)", R"(Z:\a\b\c\)"},
        {R"(Z:\a)", "/b/c", R"(Z:\a\/b/c)"},
        {R"(Z:\a)", R"(C:\x)", R"(C:\x)"},
        {R"(Z:\a)", R"(\\srv\x)", R"(\\srv\x)"},
        {R"(Z:\a\)", R"(\b)", R"(Z:\a\b)"},
        {"Z:", "b", R"(Z:\b)"},
        {R"(Z:\a\\c)", "b", R"(Z:\a\\c\b)"},
        {R"(a\b)", R"(..\..\..\c)", R"(\c)"},
        {R"(\\srv\sh)", R"(..\..\b)", R"(\\srv\b)"},
    };
    for (const auto& [path, more, expected] : rows) {
        EXPECT_EQ(appended(path, more), expected) << path << " and " << more;
    }
    const std::string folder = R"(Z:\)" + std::string(100, 'a');
    const std::string longest = std::string(259 - folder.size() - 1, 'b');
    EXPECT_EQ(appended(folder, longest), folder + '\\' + longest);
    EXPECT_EQ(appended(folder, longest + "b"), "no ");
    EXPECT_EQ(appended(R"(Z:\)" + std::string(400, 'a'), R"(..\b)"), "no ");
}

TEST(Path, RemoveFileSpecCutsAtTheLastBackslash)
{
    const std::string folder = R"(Z:\)" + std::string(400, 'a');
    const std::pair<std::string, std::string> rows[] = {{folder + R"(\b)", folder},
                                                        {R"(Z:\a\)", R"(Z:\a)"},
                                                        {R"(Z:\a)", R"(Z:\)"},
                                                        {R"(Z:\)", R"(no Z:\)"},
                                                        {"Z:a", "Z:"},
                                                        {"a", ""},
                                                        {"", "no "},
                                                        {R"(\a)", R"(\)"},
                                                        {R"(\\srv)", R"(\\)"},
                                                        {R"(Z:\a\\b)", R"(Z:\a\)"},
                                                        {"Z:/a/b", "Z:"}};
    for (const auto& [path, expected] : rows) {
        EXPECT_EQ(changed(path, PathRemoveFileSpecW), expected) << path;
    }
}

} // namespace
