// rkuinfo show and languages.
#include "tool.h"

#include "support/registry.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace testing_support;
using Json = nlohmann::json;

TEST(RkuinfoShow, TellsWhoAndWhere)
{
    const Tool tool;
    tool.check({{"--profile", "Work", "provision"}, "Software\\Acme\\Widget\n"});
    const Json shown = Json::parse(tool.run({"show", "--json"}).output);
    const Json& identity = shown["identity"];
    EXPECT_EQ(identity["company"], "Acme");
    EXPECT_EQ(identity["local-name"], "English");
    EXPECT_EQ(identity["language-id"], 1033);
    EXPECT_EQ(identity["profile"], "Work");
    EXPECT_EQ(identity["command-prefix"], nullptr);
    EXPECT_EQ(shown["program"]["help-viewer"], (Json{{"path", "{app}\\RKHelp.exe"}, {"exists", false}}));
    EXPECT_EQ(shown["registry"]["current-profile"],
              (Json{{"path", "Software\\Acme\\Widget\\2018\\en-US\\Profiles\\Work"}, {"exists", false}}));
    EXPECT_EQ(shown["local"].size(), 6u);
    EXPECT_EQ(shown["roaming"].size(), 10u);

    const std::string plain = tool.run({"show"}).output;
    EXPECT_NE(plain.find("\nprogram.help-viewer\tmissing\t{app}\\RKHelp.exe\n"), std::string::npos) << plain;
    EXPECT_EQ(plain.find('\x1b'), std::string::npos);
    const std::string aligned = tool.run({"show", "--columns", "300"}).output;
    EXPECT_EQ(aligned.find("identity\n  company                    Acme\n"), 0u) << aligned;
}

TEST(RkuinfoLanguages, TellsWhyNot)
{
    const Tool tool({"de-DE", "zh-CN"});
    writeFile(tool.application().folder() / "fr-FR" / "readme.txt", "");
    writeFile(tool.application().folder() / "ja-JP" / "Other.dll", "");
    const Json json = Json::parse(tool.run({"languages", "--json"}).output);
    ASSERT_EQ(json["languages"].size(), 15u);
    const auto row = [&json](std::size_t index) { return json["languages"][index]; };
    EXPECT_EQ(row(13)["local-name"], "简体中文");
    EXPECT_EQ(row(4)["why-not"], "empty folder");
    EXPECT_EQ(row(7)["installed"], true);
    EXPECT_EQ(row(7)["resource-library"], false);
    EXPECT_EQ(json["wanted"], nullptr);

    const std::string narrow = tool.run({"languages", "--columns", "80"}).output;
    EXPECT_EQ(narrow.substr(0, 230), "  LANGUAGE  LOCAL NAME  FOLDER   ENTRY  LIBRARY  INSTALLED\n"
                                     "  cs-CZ                 missing  no     no       no folder\n"
                                     "  de-DE     Deutsch     yes      no     yes      yes\n"
                                     "  en-US                 missing  no     no       no folder\n");

    // The default product needs an uninstall entry, which this machine has for none.
    const Json ownProduct =
        Json::parse(tool.runUnnamed({"--company", "norvik", "languages", "--json"}).output);
    EXPECT_EQ(ownProduct["needs-uninstall-entries"], true);
    EXPECT_EQ(ownProduct["languages"][1]["why-not"], "no uninstall entry");
}

TEST(RkuinfoStartUp, AsksNothing)
{
    const Tool tool({"de-DE"});
    const std::string name = "; name an installed language with --language";
    tool.check(
        {{"get", "version-root", "CurVer"}, "", "version-root CurVer: not found"}); // German, the only one
    tool.check({{"--language", "ja-JP", "show"},
                "",
                "ja-JP, which the command line names, is not installed: no folder" + name});
    setRaw(HKEY_CURRENT_USER, "Software\\Acme\\Widget\\2018", "CurVer", text("xx-XX"));
    tool.check({{"show"},
                "",
                "'xx-XX', which the registry (CurVer) names, is none of the fifteen languages" + name});
    removeKey(HKEY_CURRENT_USER, "Software\\Acme");
    tool.application().writeIni("[Product]\r\nLocaleId=1036\r\n[LocaleIdLangName]\r\n1036=fr-FR\r\n");
    tool.check({{"show"}, "", "fr-FR, which TARVO.ini names, is not installed: no folder" + name});
    Tool(noLanguages).check({{"show"}, "", "no language is installed in {app}\\"});
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, "Software\\Acme"));
}

} // namespace
