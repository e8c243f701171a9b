// GetPrivateProfileStringW and GetPrivateProfileIntW.
#include "support/scratch.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace testing_support;

class Ini
{
public:
    explicit Ini(const std::string& bytes) : Ini() { writeFile(scratchFolder() / m_name, bytes); }
    Ini() : m_name("case" + std::to_string(++s_count) + ".ini") {}

    std::string path() const { return windowsPath(scratchFolder() / m_name); }

    /// The text in front of how many characters were reported, which differ only where a list or a cut is.
    std::string get(const wchar_t* section, const wchar_t* key, const wchar_t* fallback = L"?",
                    DWORD size = 100) const
    {
        std::vector<wchar_t> out(size + 2, L'#');
        const DWORD copied = GetPrivateProfileStringW(section, key, fallback, out.data(), size, Wide(path()));
        std::replace(out.begin(), out.begin() + copied, L'\0', L'|');
        return utf8(out.data()) + (out[copied] == 0 ? "" : ", not terminated");
    }

    int number(const wchar_t* key) const
    {
        return static_cast<int>(GetPrivateProfileIntW(L"s", key, -9, Wide(path())));
    }

private:
    inline static int s_count = 0;
    std::string m_name;
};

std::string utf16(const std::string& text, bool bigEndian)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) {
        bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return bytes;
}

TEST(Ini, FindsValues)
{
    const Ini ini(
        "pre=0\r\n[Sec]\r\nkey=value\n ; comment\n;off=1\n  two words \t=  in blanks\t \r\nq=\" x "
        "\"\nq1='x'\n"
        "q2=\"open\nq3=\"\nq4=\"a\" b\nq5=\"\"\nbare\n=unnamed\nempty=\nkey=again\neq=a=b\nsemi=v ; w\n"
        "[Two] rest\na=1\r[SEC]\nlate=1\n [ Blank ] \nb=2\n[Open\nb1=3\n[In]ner]\nc=4\n[last]\nz=end");
    const struct
    {
        const wchar_t* section;
        const wchar_t* key;
        const char* expected;
    } cases[] = {
        {L"Sec", L"key", "value"},
        {L"sEC", L"KEY", "value"},
        {L" Sec ", L" key ", "value"},
        {L"Sec", L"two words", "in blanks"},
        {L"Sec", L"q", " x "},
        {L"Sec", L"q1", "x"},
        {L"Sec", L"q2", "\"open"},
        {L"Sec", L"q3", "\""},
        {L"Sec", L"q4", "\"a\" b"},
        {L"Sec", L"q5", ""},
        {L"Sec", L"bare", "?"},
        {L"Sec", L"", "unnamed"},
        {L"Sec", L"empty", ""},
        {L"Sec", L"eq", "a=b"},
        {L"Sec", L"semi", "v ; w"},
        {L"Sec", L"off", "?"},
        {L"Sec", L"late", "?"}, // the first section of a name counts
        {L"", L"pre", "0"},
        {L"Two", L"a", "1"},
        {L"Blank", L"b", "2"},
        {L"Blank", L"b1", "3"},
        {L"Open", L"b1", "?"},
        {L"In", L"c", "?"},
        {L"In]ner", L"c", "4"},
        {L"last", L"z", "end"},
        {L"none", L"z", "?"},
        {nullptr, L"key", "Sec|Two|SEC|Blank|In]ner|last|"},
        {L"two", nullptr, "a|"},
        {L"sec", nullptr, "key|two words|q|q1|q2|q3|q4|q5||empty|key|eq|semi|"},
        {L"none", nullptr, "?"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ini.get(c.section, c.key), c.expected) << utf8(c.section) << ", " << utf8(c.key);
    }
}

TEST(Ini, CutsAndFallsBack)
{
    const Ini ini("[s]\nkey=value\n[t]\na=1\n");
    const char* const cutValues[] = {"", "v", "va", "val", "valu", "value", "value"};
    for (DWORD size = 1; size <= std::size(cutValues); ++size) {
        EXPECT_EQ(ini.get(L"s", L"key", L"?", size), cutValues[size - 1]);
    }
    const char* const cutLists[] = {"", "", "s", "s|", "s|t", "s|t|", "s|t|"};
    for (DWORD size = 1; size <= std::size(cutLists); ++size) {
        EXPECT_EQ(ini.get(nullptr, nullptr, L"?", size), cutLists[size - 1]);
    }
    wchar_t untouched = L'#';
    EXPECT_EQ(GetPrivateProfileStringW(L"s", L"key", L"?", &untouched, 0, Wide(ini.path())), 0U);
    EXPECT_EQ(untouched, L'#');
    EXPECT_EQ(ini.get(L"s", L"none", L" a b  "), " a b");
    EXPECT_EQ(ini.get(L"s", L"none", L"'a'"), "a");
    EXPECT_EQ(ini.get(L"s", L"none", nullptr), "");
    EXPECT_EQ(ini.get(L"s", L"none", L"abc", 3), "ab");
}

TEST(Ini, ParsesNumbers)
{
    const Ini ini(
        "[s]\na=12\nb=-7\nc=+4\nd=0x1F\ne=12abc\nf=abc\ng=4294967297\nh=\"6\"\ni=\nj=- 3\nk=-2147483649\n"
        "l=99999999999999999999\nm=0x:\n");
    const std::pair<const wchar_t*, int> cases[] = {
        {L"a", 12}, {L"b", -7}, {L"c", 4}, {L"d", 31},         {L"e", 12},         {L"f", 0}, {L"g", 1},
        {L"h", 6},  {L"i", -9}, {L"j", 0}, {L"k", 2147483647}, {L"l", 1661992959}, {L"m", 0}, {L"none", -9},
    };
    for (const auto& [key, expected] : cases) {
        EXPECT_EQ(ini.number(key), expected) << utf8(key);
    }
}

TEST(Ini, ReadsWhatItCan)
{
    const std::string text = "[s]\r\nk=v\xE9\r\n";
    EXPECT_EQ(Ini(utf16(text, false)).get(L"s", L"k"), "v\xC3\xA9");
    EXPECT_EQ(Ini(utf16(text, true)).get(L"s", L"k"), "v\xC3\xA9");
    EXPECT_EQ(Ini(utf16(text, false) + "x").get(L"s", L"k"), "v\xC3\xA9");
    EXPECT_EQ(Ini("\xEF\xBB\xBF[s]\nk=v\xC3\xA9").get(L"s", L"k"), "v\xC3\xA9");
    EXPECT_EQ(Ini(text).get(L"s", L"k"), "v\xC3\xA9");                 // no UTF-8: Latin-1
    EXPECT_EQ(Ini(utf16(text, false).substr(2)).get(L"s", L"k"), "?"); // unmarked
    EXPECT_EQ(Ini("").get(L"s", L"k"), "?");
    EXPECT_EQ(Ini("\xFF").get(L"s", L"k"), "?");

    std::string big = "[s]\n";
    while (big.size() < 1'000'000) {
        big += "k" + std::to_string(big.size()) + "=v\n";
    }
    const Ini bigIni(big + "line=" + std::string(70000, 'x') + "\nend=1");
    EXPECT_EQ(bigIni.get(L"S", L"line", L"?", 100000), std::string(70000, 'x'));
    EXPECT_EQ(bigIni.number(L"end"), 1);

    const Ini missing;
    EXPECT_EQ(missing.get(L"s", L"k"), "?");
    EXPECT_EQ(missing.get(nullptr, nullptr), "");
    EXPECT_EQ(missing.number(L"k"), -9);
    wchar_t out[8];
    EXPECT_EQ(GetPrivateProfileStringW(L"s", L"k", L"?", out, 8, Wide(windowsPath(scratchFolder()))), 1U);
}

} // namespace
