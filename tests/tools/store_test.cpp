// rkuinfo provision, get, set, list, tree and rm.
#include "tool.h"

#include "support/registry.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

constexpr char settingsKey[] = "Software\\Acme\\Widget\\2018\\en-US\\Settings";

TEST(RkuinfoStore, KeepsEachTypeFromRunToRun)
{
    const Tool tool;
    const std::string values[][3] = {{"int", "-2147483648", "-2147483648"},
                                     {"int64", "-9007199254740993", "-9007199254740993"},
                                     {"double", "1.25", "000000000000f43f"},
                                     {"binary", "00fF10", "00ff10"},
                                     {"string", "Grün – 图纸 😀 {} [a]", "Grün – 图纸 😀 {} [a]"},
                                     {"string", "", ""},
                                     {"string", "two\nlines", "two\nlines"}};
    for (const auto& [type, word, shown] : values) {
        tool.check({{"set", "settings", "Display/Value", type, word}});
        tool.check({{"get", "settings", "\\Display\\Value"}, shown + '\n'});
    }
    tool.check({
        {{"set", "settings", "", "string", "--", "-dash"}},
        {{"get", "settings", ""}, "-dash\n"},
        {{"get", "settings", "", "--json"}, "{\n  \"type\": \"string\",\n  \"value\": \"-dash\"\n}\n"},
    });
}

TEST(RkuinfoStore, ListsAndRemoves)
{
    const Tool tool;
    tool.check({
        {{"provision"}, "Software\\Acme\\Widget\n"},
        {{"set", "settings", "Display/Colors/Back", "int", "1"}},
        {{"set", "settings", "Display/Title", "string", "a\tb"}},
    });
    setRaw(HKEY_CURRENT_USER, std::string(settingsKey) + "\\Display", "", text("\xed\xa0\x80"));
    setRaw(HKEY_CURRENT_USER, std::string(settingsKey) + "\\Display", "Zlist",
           {REG_MULTI_SZ, std::string(4, '\0')});
    const std::string odd = "Zlist\t?\tstored with another type\n";
    tool.check({
        {{"list", "settings", "Display"},
         "Colors\\\tkey\t\n(default)\tstring\t\\ud800\nTitle\tstring\ta\\u0009b\n" + odd},
        {{"tree", "settings"},
         "Display\t\tkey\t\nDisplay\t(default)"
         "\tstring\t\\ud800\nDisplay\tTitle\tstring\ta\\u0009b\nDisplay\t" +
             odd + "Display\\Colors\t\tkey\t\nDisplay\\Colors\tBack\tint\t1\n"},
        {{"tree", "settings", "--columns", "46"},
         "  Display\\     key\n    (default)  string  \\ud800\n    Title      string  a\\u0009b\n"
         "    Zlist      ?       stored with another\n                       type\n"
         "    Colors\\    key\n      Back     int     1\n"},
        {{"rm", "settings", "Display/Colors"}},
        {{"rm", "settings", "Display", "--value", "Title"}},
        {{"rm", "settings", "Display", "--value", ""}},
        {{"list", "settings", "Display"}, odd},
        {{"list", "settings", "Display", "--json"},
         "{\n  \"values\": [\n    {\n      \"name\": \"Zlist\",\n      \"error\": \"stored with another "
         "type\"\n    }\n"
         "  ],\n  \"keys\": []\n}\n"},
        {{"rm", "settings", "--all"}},
    });
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, settingsKey));
}

TEST(RkuinfoStore, ExplainsWhatFailed)
{
    const Tool tool;
    const std::string longName(300, 'k');
    const std::string odd = std::string(settingsKey) + "\\Odd";
    setRaw(HKEY_CURRENT_USER, odd, std::string(1100, 'n'), dword(1));
    makeKey(HKEY_CURRENT_USER, odd + "\\and/or");
    tool.check({
        {{"list", "settings", "Odd"}, "and/or\\\tkey\t\n(name too long)\t?\tname too long\n"},
        {{"tree", "settings", "Odd"},
         "Odd\t(name too long)\t?\tname too long\nOdd\\and/or\t\tkey\t\nOdd\\and/or\t\t?\tnot found\n"},
        {{"rm", "settings", "--all"}},
        {{"get", "settings", "Display/None"}, "", "settings Display/None: not found"},
        {{"list", "settings"}, "", "settings: not found"},
        {{"tree", "settings", "None"}, "", "settings None: not found"},
        {{"rm", "settings", "None"}, "", "settings None: not found"},
        {{"rm", "settings"}, "", "rm takes a KEY, a --value, or --all for the whole of settings", 2},
        {{"get", "settings", std::string(1024, 'x')},
         "",
         "settings " + std::string(1024, 'x') + ": name too long, or start-up missing"},
        {{"set", "settings", longName + "/Value", "int", "1"},
         "",
         "settings " + longName + "/Value: not found"},
        {{"set", "settings", "A", "int", "1"}},
        {{"rm", "settings", "--value", "B"}, "", "settings, value 'B': not found"},
        {{"set", "settings", "A", "int", "2147483648"},
         "",
         "'2147483648' is no int: it takes a whole number from -2147483648 to 2147483647",
         2},
        {{"set", "settings", "A", "int64", "1.5"},
         "",
         "'1.5' is no int64: it takes a whole number from -9223372036854775808 to 9223372036854775807",
         2},
        {{"set", "settings", "A", "double", "1,5"},
         "",
         "'1,5' is no double: it takes a number such as 1.25",
         2},
        {{"set", "settings", "A", "binary", "0f1"},
         "",
         "'0f1' is no binary: it takes one or more bytes in hexadecimal, such as 00ff10",
         2},
        {{"get", "settings", "A"}, "1\n"},
    });
    const ChildResult result = tool.runUnnamed({"--product", std::string(255, 'p'), "show"});
    EXPECT_EQ(result.errors, "rkuinfo: --company and --product take at most 254 characters\n");
    EXPECT_EQ(result.exitCode, 2);
}

} // namespace
