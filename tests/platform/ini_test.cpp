// GetPrivateProfileStringW and GetPrivateProfileIntW.
#include "support/test.h"

namespace {

using namespace testing_support;

/// A file under a name of its own, as systems may keep what they have read.
std::string iniFile(const std::string& bytes)
{
    static int files = 0;
    const std::filesystem::path path = scratchFolder() / ("case" + std::to_string(++files) + ".ini");
    writeFile(path, bytes);
    return windowsPath(path);
}

/// As many characters as were reported.
std::string get(const std::string& path, LPCWSTR section, LPCWSTR key, LPCWSTR fallback = L"?",
                DWORD size = 100)
{
    std::vector<wchar_t> out(size + 2, L'#');
    const DWORD copied = GetPrivateProfileStringW(section, key, fallback, out.data(), size, Wide(path));
    return utf8(out.data()) + (out[copied] == 0 ? "" : ", not terminated");
}

int number(const std::string& path, LPCWSTR key)
{
    return static_cast<int>(GetPrivateProfileIntW(L"s", key, -9, Wide(path)));
}

TEST(IniFile, FindsValues)
{
    const std::string path = iniFile(
        "pre=0\r\n[Sec]\r\nkey=value\n ; comment\n;off=1\n  two words \t=  in blanks\t \r\nq=\" x "
        "\"\nq1='x'\n"
        "q2=\"open\nq3=\"a\" b\nq4=\"\"\nbare\n=unnamed\nempty=\nkey=again\neq=a=b\nsemi=v ; w\n"
        "[Two] rest\na=1\r[SEC]\nlate=1\n [ Blank ] \nb=2\n[Open\nb1=3\n[In]ner]\nc=4\n[last]\nz=end");
    // Of sections and keys of one name the first counts.
    const std::pair<LPCWSTR, std::vector<std::pair<LPCWSTR, const char*>>> sections[] = {
        {L" sEC ", {{L" KEY ", "value"}, {L"two words", "in blanks"}, {L"off", "?"}, {L"late", "?"}}},
        {L"Sec", {{L"q", " x "}, {L"q1", "x"}, {L"q2", "\"open"}, {L"q3", "\"a\" b"}, {L"q4", ""}}},
        {L"Sec", {{L"bare", "?"}, {L"empty", ""}, {L"eq", "a=b"}, {L"semi", "v ; w"}}},
        {L"", {{L"pre", "0"}}},
        {L"Two", {{L"a", "1"}}},
        {L"Blank", {{L"b", "2"}, {L"b1", "3"}}},
        {L"In]ner", {{L"c", "4"}}},
        {L"last", {{L"z", "end"}}},
        {L"none", {{L"z", "?"}}},
    };
    for (const auto& [section, keys] : sections) {
        for (const auto& [key, expected] : keys) {
            EXPECT_EQ(get(path, section, key), expected) << utf8(section) << ", " << utf8(key);
        }
    }
}

TEST(IniFile, CutsAndFallsBack)
{
    const std::string path = iniFile("[s]\nkey=value\n");
    for (DWORD size = 1; size <= 7; ++size) {
        EXPECT_EQ(get(path, L"s", L"key", L"?", size), std::string("value").substr(0, size - 1));
    }
    wchar_t untouched = L'#';
    EXPECT_EQ(GetPrivateProfileStringW(L"s", L"key", L"?", &untouched, 0, Wide(path)), 0U);
    EXPECT_EQ(untouched, L'#');
    EXPECT_EQ(get(path, L"s", L"none", L" a b  "), " a b");
    EXPECT_EQ(get(path, L"s", L"none", nullptr), "");
}

TEST(IniFile, ParsesNumbers)
{
    const std::string path =
        iniFile("[s]\na=12\nb=-7\nc=+4\nd=0x1F\ne=12abc\nf=abc\ng=4294967297\nh=\"6\"\ni=\n"
                "j=- 3\nk=-2147483649\nl=99999999999999999999\nm=0x:\n"
                "n=-0b110\no=0o17\np=0B1\n");
    const std::pair<LPCWSTR, int> rows[] = {
        {L"a", 12}, {L"b", -7},    {L"c", 4},  {L"d", 31}, {L"e", 12},         {L"f", 0},
        {L"g", 1},  {L"h", 6},     {L"i", -9}, {L"j", 0},  {L"k", 2147483647}, {L"l", 1661992959},
        {L"m", 0},  {L"none", -9}, {L"n", -6}, {L"o", 15}, {L"p", 0},
    };
    for (const auto& [key, expected] : rows) {
        EXPECT_EQ(number(path, key), expected) << utf8(key);
    }
}

std::string utf16(const std::string& text, bool bigEndian)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) {
        bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    }
    return bytes;
}

TEST(IniFile, ReadsWhatItCan)
{
    const std::string latin1 = "[s]\r\nk=v\xE9\r\n";
    const std::pair<std::string, const char*> rows[] = {
        {utf16(latin1, false), "v\xC3\xA9"},
        {utf16(latin1, true), "v\xC3\xA9"},
        {utf16(latin1, false) + "x", "v\xC3\xA9"},
        {"\xEF\xBB\xBF[s]\nk=v\xC3\xA9", "v\xC3\xA9"},
        {latin1, "v\xC3\xA9"},
        {utf16(latin1, false).substr(2), "?"}, // unmarked
        {"", "?"},
        {"\xFF", "?"},
    };
    for (const auto& [bytes, expected] : rows) {
        EXPECT_EQ(get(iniFile(bytes), L"s", L"k"), expected) << bytes;
    }
    const std::string big =
        iniFile("[s]\n" + std::string(900'000, ';') + "\nline=" + std::string(70000, 'x') + "\nend=1");
    EXPECT_EQ(get(big, L"S", L"line", L"?", 100000), std::string(70000, 'x'));
    EXPECT_EQ(number(big, L"end"), 1);
    for (const auto& unreadable : {scratchFolder(), scratchFolder() / "none.ini"}) {
        EXPECT_EQ(get(windowsPath(unreadable), L"s", L"k"), "?");
        EXPECT_EQ(number(windowsPath(unreadable), L"k"), -9);
    }
}

} // namespace
