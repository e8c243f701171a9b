// The comparison of names.
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

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
    const struct
    {
        const wchar_t* a;
        const wchar_t* b;
        int aLength;
        int bLength;
        BOOL ignoreCase;
        int expected;
    } cases[] = {
        {L"a", L"A", -1, -1, FALSE, CSTR_GREATER_THAN},
        {L"a", L"A", -1, -1, TRUE, CSTR_EQUAL},
        {L"_", L"a", -1, -1, FALSE, CSTR_LESS_THAN},
        {L"_", L"a", -1, -1, TRUE, CSTR_GREATER_THAN}, // "_" lies between the cases
        {L"ab", L"abc", -1, -1, TRUE, CSTR_LESS_THAN},
        {L"abX", L"aby", 2, 2, FALSE, CSTR_EQUAL},
        {L"a\0b", L"a\0c", 3, 3, FALSE, CSTR_LESS_THAN}, // a length counts terminators in
        {L"", L"x", -1, 0, FALSE, CSTR_EQUAL},
        {L"\x00E4\x044F\x03C9", L"\x00C4\x042F\x03A9", -1, -1, TRUE, CSTR_EQUAL},
        {L"\x00DF", L"SS", -1, -1, TRUE, CSTR_GREATER_THAN}, // one unit against one
        {L"i", L"\x0130", -1, -1, TRUE, CSTR_LESS_THAN},     // no user's language
        {L"\xD83D\xDE00", L"\xE000", -1, -1, FALSE, CSTR_LESS_THAN},
        {nullptr, L"a", -1, -1, FALSE, 0},
        {L"a", nullptr, -1, 0, FALSE, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(utf8(c.a) + " and " + utf8(c.b));
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(CompareStringOrdinal(c.a, c.aLength, c.b, c.bLength, c.ignoreCase), c.expected);
        EXPECT_EQ(GetLastError(), c.expected == 0 ? DWORD{ERROR_INVALID_PARAMETER} : DWORD{ERROR_SUCCESS});
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

TEST(LastError, BelongsToTheThread)
{
    SetLastError(ERROR_DISK_FULL);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_DISK_FULL});
}

} // namespace
