// rkuinfo export and import: nothing is lost, and a bad file changes nothing.
#include "tool.h"

#include "support/registry.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace testing_support;

const std::string settingsKey = "Software\\Acme\\Widget\\2018\\en-US\\Settings";

const std::string longName(250, 'k');

/// Longer than a path may be.
std::string deepKey()
{
    return longName + '\\' + longName + '\\' + longName + '\\' + longName;
}

/// A file as it is named on a command line.
std::string argument(const std::filesystem::path& file)
{
    const std::u8string name = file.u8string();
    return {name.begin(), name.end()};
}

TEST(RkuinfoTransfer, ExportWipeImportGivesTheSameTree)
{
    const Tool tool;
    const std::string lone = "\xed\xa0\x80 \xed\xb0\x80";
    const std::string key = settingsKey + "\\Bäume " + lone + "\\Leaf";
    setRaw(HKEY_CURRENT_USER, key, "", text("default"));
    setRaw(HKEY_CURRENT_USER, key, lone, text(lone + "\n\"😀\" \\"));
    setRaw(HKEY_CURRENT_USER, key, "a/b\\c", text(""));
    setRaw(HKEY_CURRENT_USER, key, "least", dword(0x80000000));
    setRaw(HKEY_CURRENT_USER, key, "quad", {REG_QWORD, std::string("\x01\x00\x00\x00\x00\x00\x20\x80", 8)});
    setRaw(HKEY_CURRENT_USER, key, "bytes", {REG_BINARY, std::string("\x00\xff\x7f", 3)});
    makeKey(HKEY_CURRENT_USER, settingsKey + "\\Empty");
    const std::string before = tree(HKEY_CURRENT_USER, settingsKey);
    const std::filesystem::path path = tool.application().folder() / u8"Grün.json";
    const std::string file = argument(path);

    tool.check({{"export", "settings", "--file", file}});
    tool.check({{"export", "settings"}, readFile(path)});
    tool.check({{"rm", "settings", "--all"}});
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settingsKey), "");
    tool.check({{"import", "settings", "--file", file}});
    EXPECT_EQ(tree(HKEY_CURRENT_USER, settingsKey), before);

    tool.check({{"import", "applications", "/Copy/", "--file", file}});
    tool.check({{"export", "applications", "Copy"}, readFile(path)});
}

TEST(RkuinfoTransfer, TellsWhatItLeavesOut)
{
    const Tool tool;
    setRaw(HKEY_CURRENT_USER, settingsKey, "expand", {REG_EXPAND_SZ, std::string(2, '\0')});
    setRaw(HKEY_CURRENT_USER, settingsKey + "\\Key", "none", {REG_BINARY, ""});
    setRaw(HKEY_CURRENT_USER, settingsKey + "\\Key", std::string(1100, 'n'), dword(1));
    makeKey(HKEY_CURRENT_USER, settingsKey + "\\Key\\and/or");
    const std::string deep = deepKey();
    makeKey(HKEY_CURRENT_USER, settingsKey + '\\' + deep);
    const ChildResult result = tool.run({"export", "settings"});
    EXPECT_EQ(result.errors,
              "rkuinfo: left out value 'expand' of the top key: stored with another type\n"
              "rkuinfo: left out value '' of Key: name too long\n"
              "rkuinfo: left out value 'none' of Key: binary values without bytes cannot be written\n"
              "rkuinfo: left out the key of Key\\and/or: no path leads to a name with a slash\n"
              "rkuinfo: left out the key of " +
                  deep + ": name too long, or start-up missing\n");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(nlohmann::json::parse(result.output)["keys"][0]["name"], "Key");
    tool.check({{"export", "settings", "None"}, "", "settings None: not found"});
    tool.run({"set", "applications", "A", "int", "1"});
    tool.check({{"export", "applications", "--file", tool.application().folder().string()},
                "",
                tool.application().folder().string() + " cannot be written"});
}

TEST(RkuinfoTransfer, ABadFileChangesNothing)
{
    const Tool tool;
    const std::filesystem::path path = tool.application().folder() / "bad.json";
    const std::string file = argument(path);
    const auto value = [](const std::string& members) {
        return R"({"values": [{"name": "good", "type": "int", "value": 1}, {)" + members +
               R"(}], "keys": []})";
    };
    const auto key = [](const std::string& name) {
        return R"({"values": [], "keys": [{"name": )" + name + R"(, "values": [], "keys": []}]})";
    };
    const std::string noValue = "the top key: value 'x' has no usable type and value";
    const std::string noName = "the top key: a value has no usable name";
    const std::string noKeyName = "the top key: a key below it has no usable name";
    const std::string noKey = "the top key: it is no object of \"values\" and \"keys\"";
    const std::string empty = R"({"values": [], "keys": []})";
    const auto above = [](const std::string& json) {
        return R"({"values": [], "keys": [{"name": ")" + longName + "\", " + json.substr(1) + "]}";
    };
    const std::string deep = above(above(above(above(empty))));
    const auto told = [&file](const std::string& why) { return file + ": " + why; };
    const std::pair<std::string, std::string> rows[] = {
        {"[]", noKey},
        {R"({"values": []})", noKey},
        {R"({"values": [], "keys": 1})", noKey},
        {value(""), noName},
        {value(R"("name": 1, "type": "int", "value": 1)"), noName},
        {value(R"("name": {"utf16": [65536]}, "type": "int", "value": 1)"), noName},
        {value(R"("name": "a\u0000b", "type": "int", "value": 1)"), noName},
        {value("\"name\": \"" + std::string(1024, 'n') + R"(", "type": "int", "value": 1)"), noName},
        {value(R"("name": "x", "type": "int", "value": 2147483648)"), noValue},
        {value(R"("name": "x", "type": "int", "value": 1.5)"), noValue},
        {value(R"("name": "x", "type": "int64", "value": 9223372036854775808)"), noValue},
        {value(R"("name": "x", "type": "binary", "value": "")"), noValue},
        {value(R"("name": "x", "type": "string", "value": 1)"), noValue},
        {value(R"("name": "x", "type": "float", "value": 1)"), noValue},
        {value(R"("name": "x", "type": "int")"), noValue},
        {value(R"("name": "x", "type": "int", "value": 1, "more": 2)"), noValue},
        {key("\"\""), noKeyName},
        {key("\"a/b\""), noKeyName},
        {key('"' + std::string(256, 'k') + '"'), noKeyName},
        {deep, deepKey() + ": its path is too long"},
    };
    for (const auto& [bytes, why] : rows) {
        writeFile(path, bytes);
        SCOPED_TRACE(bytes);
        tool.check({{"import", "settings", "--file", file}, "", told(why)});
    }
    const ChildResult broken = tool.run({"import", "settings"}); // of an empty standard input
    EXPECT_EQ(broken.errors.find("rkuinfo: standard input is no JSON: parse error at line 1, column 1: "), 0u)
        << broken.errors;
    for (const std::string& unreadable : {std::string("none.json"), argument(tool.application().folder())}) {
        tool.check({{"import", "settings", "--file", unreadable}, "", unreadable + " cannot be read"});
    }
    tool.check({{"import", "current-profile", "--file", file}, "", "current-profile: not found"});
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, "Software\\Acme"));

    writeFile(path, empty);
    const std::string refused(300, 'k');
    tool.check({{"import", "settings", refused, "--file", file}, "", refused + ": refused by the registry"});
}

} // namespace
