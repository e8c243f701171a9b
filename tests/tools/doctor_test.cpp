// rkuinfo doctor: each thing that can be wrong, and that it changes nothing.
#include "tool.h"

#include "support/registry.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using namespace testing_support;

constexpr char versionKey[] = "Software\\Acme\\Widget\\2018";
constexpr char profilesKey[] = "Software\\Acme\\Widget\\2018\\en-US\\Profiles";

std::string doctor(const Tool& tool, int exitCode)
{
    const std::string before = tree(HKEY_CURRENT_USER, "Software\\Acme");
    const ChildResult result = tool.run({"doctor"});
    EXPECT_EQ(result.exitCode, exitCode) << result.errors;
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software\\Acme"), before);
    return result.output;
}

TEST(RkuinfoDoctor, FindsNothingWrong)
{
    const Tool tool;
    tool.application().writeIni("[Product]\r\nLocaleId=1033\r\n[LocaleIdLangName]\r\n1033=en-US\r\n");
    tool.application().writeIni("[Product]\r\nMajorVer=2\r\nProductId=5\r\n", "product.ini");
    tool.run({"provision"});
    EXPECT_EQ(doctor(tool, 0), "nothing is wrong\n");
}

TEST(RkuinfoDoctor, FindsWhatIsWrongWithTheTree)
{
    const Tool tool;
    const std::string provision = ": rkuinfo provision\n";
    EXPECT_EQ(doctor(tool, 1),
              std::string("the user has no key ") + profilesKey + "\tcreate the user's tree" + provision);
    makeKey(HKEY_CURRENT_USER, profilesKey);
    EXPECT_EQ(doctor(tool, 1), "no profile is the current one\tchoose one" + provision);
    setRaw(HKEY_CURRENT_USER, profilesKey, "", text("Ghost"));
    EXPECT_EQ(doctor(tool, 1),
              "the current profile 'Ghost' has no key\tstore a setting in it, or choose another with "
              "--profile\n");
    makeKey(HKEY_CURRENT_USER, std::string(profilesKey) + "\\Ghost");
    EXPECT_EQ(doctor(tool, 0), "nothing is wrong\n");
    setRaw(HKEY_CURRENT_USER, versionKey, "CurVer", text("ja-JP"));
    EXPECT_EQ(doctor(tool, 1),
              "ja-JP, which the registry (CurVer) names, is not installed: no folder\tinstall it, or "
              "choose another: rkuinfo --language en-US provision\n");
}

TEST(RkuinfoDoctor, FindsWhatIsWrongWithTheFolder)
{
    const Tool tool(noLanguages);
    const Application& application = tool.application();
    writeFile(application.folder() / "de-DE" / "Other.dll", "no library");
    writeFile(application.folder() / "fr-FR" / "readme.txt", "");
    application.writeIni("[Product]\r\nLocaleId=1034\r\n[LocaleIdLangName]\r\n1036=French\r\n");
    application.writeIni("[Product]\r\nMajorVer=2\r\n", "product.ini");
    setRaw(HKEY_CURRENT_USER, "Software\\Acme\\Widget\\2018\\de-DE\\Profiles", "", text("Default"));
    EXPECT_EQ(
        doctor(tool, 1),
        "TARVO.ini: [Product] LocaleId=1034 is not mapped to a language\tadd 1034=xx-XX to its section "
        "[LocaleIdLangName]\n"
        "TARVO.ini: [LocaleIdLangName] 1036=French names no language\twrite the short name of one of the "
        "fifteen "
        "languages there\n"
        "product.ini gives commands no prefix\twrite numbers for MajorVer and ProductId into its section "
        "[Product]\n"
        "{app}\\de-DE\\RkUInfoRes.dll cannot be loaded\tinstall de-DE again\n"
        "{app}\\fr-FR holds no library\tinstall fr-FR again, or remove the folder\n");
    std::filesystem::remove_all(application.folder() / "de-DE");
    const auto json = nlohmann::json::parse(tool.run({"doctor", "--json"}).output);
    EXPECT_EQ(json["findings"].back()["problem"], "no language is installed");
}

TEST(RkuinfoDoctor, WantsAnUninstallEntryForTheDefaultProduct)
{
    const Tool tool;
    const ChildResult result = tool.runUnnamed({"--company", "NORVIK", "--product", "tarvo", "doctor"});
    EXPECT_EQ(result.output,
              "{app}\\en-US is no installed language: no uninstall entry\tinstall en-US, or remove the "
              "folder\n"
              "no language is installed\tinstall one: no application can start\n");
    EXPECT_EQ(result.exitCode, 1);
}

} // namespace
