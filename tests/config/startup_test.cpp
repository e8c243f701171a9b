// Start-up: which language the process takes, what it asks the user, and what it leaves behind.
#include "support/child.h"
#include "support/config.h"
#include "support/registry.h"
#include "support/seam.h"

#include <gtest/gtest.h>
#include <io.h>

#include <cstdio>
#include <sstream>

namespace {

using namespace testing_support;
using enum TarvoConfig::Error;

const std::string uninstall = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr char absent[] = "-"; // a language argument that is not given at all

/// A launcher: starts up, and prints its message box and the language that it took.
const ChildPart launch("launch", [](const std::vector<std::string>& arguments) {
    const auto box = intercept<decltype(MessageBoxW)>("MessageBoxW", [](auto real, HWND owner, LPCWSTR text,
                                                                        LPCWSTR caption, UINT style) {
        std::printf("%s: %s|%x%s|", utf8(caption).c_str(), utf8(text).c_str(), style, owner ? " owned" : "");
        std::fflush(stdout);
        return real(owner, text, caption, style);
    });
    const Wide language(arguments.at(2));
    const TarvoConfig::Error error = InitVelaConfig(Wide(arguments.at(0)), Wide(arguments.at(1)),
                                                    arguments.at(2) == absent ? nullptr : +language, nullptr);
    std::printf("%s", utf8(GetCurrentLanguageShortName()).c_str());
    return static_cast<int>(error);
});

const std::string invalidName =
    "The input initial language name is not a valid short language name.The program will exit.|10";
const std::string nothingInstalled = "Could't find any installed languages!|10";

std::string asks(const std::string& language)
{
    return "The input language is not installed, continue with " + language + "?|24";
}

std::string ini(const std::string& localeId, const std::string& mapping)
{
    return "[Product]\r\nLocaleId=" + localeId + "\r\n[LocaleIdLangName]\r\n" + mapping + "\r\n";
}

struct Row
{
    std::string what;
    std::string argument = absent;
    std::optional<RawValue> remembered = {};
    std::string iniText = {};
    std::string becomes = {}; // nothing: it ends with exit code 1
    std::string box = {};     // its text and style
    std::string entries = "en-US fr-FR zh-CN";
    std::string folders = entries;
    std::string company = "norvik"; // with this product the default product
    std::string product = "Tarvo";
    std::vector<std::string> answers = {"yes"};
    bool hasVersionKey = true;
};

std::vector<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

void check(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const Application application(std::to_string(&row - rows.data()));
        for (const std::string& language : words(row.folders)) {
            application.addLanguage(language);
        }
        removeKey(HKEY_LOCAL_MACHINE, uninstall);
        for (const std::string& language : words(row.entries)) {
            addUninstallEntry(static_cast<int>(TarvoLanguage(Wide(language)).velaLanguage()));
        }
        const std::string versionKey = "Software\\" + row.company + "\\" + row.product + "\\2018";
        removeKey(HKEY_CURRENT_USER, "Software\\" + row.company);
        if (row.hasVersionKey) {
            makeKey(HKEY_CURRENT_USER, versionKey);
        }
        if (row.remembered) {
            setRaw(HKEY_CURRENT_USER, versionKey, "CurVer", *row.remembered);
        }
        if (!row.iniText.empty()) {
            application.writeIni(row.iniText);
        }
        const ChildResult result =
            launch.run(application.program(), {row.company, row.product, row.argument}, {{}, row.answers});

        const bool ends = row.becomes.empty();
        const std::string box = row.box.empty() ? "" : row.product + ": " + row.box + '|';
        EXPECT_EQ(result.exitCode, ends ? 1 : 0);
        EXPECT_EQ(result.output, box + row.becomes);
        std::string shown;
        for (const ShownBox& seen : result.boxes) {
            shown += seen.caption + ": " + seen.text + box.substr(box.find('|'));
        }
        EXPECT_EQ(shown, box);
        EXPECT_EQ(keyExists(HKEY_CURRENT_USER, versionKey), row.hasVersionKey);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, versionKey, "CurVer"),
                  ends || !row.hasVersionKey ? row.remembered : text(row.becomes));
    }
}

const std::string french = ini("1036", "1036=fr-FR");

TEST(StartUp, TakesTheArgument)
{
    check({
        {"before all else", "fr-FR", text("zh-CN"), ini("2052", "2052=zh-CN"), "fr-FR"},
        {"in any case", "FR-fr", {}, "", "fr-FR"},
        {"but not an empty one", "", text("fr-FR"), "", "fr-FR"},
        {"not installed: nothing else counts", "de-DE", text("fr-FR"), french, "en-US", asks("English")},
        {"no folder", "de-DE", {}, "", "en-US", asks("English"), "en-US de-DE", "en-US"},
        {"no entry", "de-DE", {}, "", "fr-FR", asks("French"), "fr-FR", "en-US de-DE fr-FR"},
        {"rebranded", "de-DE", {}, "", "de-DE", "", "", "de-DE", "Acme", "Widget"},
        {"rebranded by its product", "de-DE", {}, "", "de-DE", "", "", "de-DE", "NORVIK", "Widget"},
        {"rebranded, no folder", "de-DE", {}, "", "fr-FR", asks("French"), "de-DE", "fr-FR", "Acme", "TARVO"},
        {"of no language", "en", text("fr-FR"), french, "", invalidName},
        {"over-long", std::string(2000, 'x'), {}, "", "", invalidName, "", "en-US", "Acme", "Widget"},
    });
}

TEST(StartUp, TakesWhatIsRemembered)
{
    check({
        {"in any case", absent, text("ZH-cn"), french, "zh-CN"},
        {"unterminated", absent, RawValue{REG_SZ, text("zh-CN").bytes.substr(0, 10)}, french, "zh-CN"},
        {"not installed: no INI file", absent, text("ja-JP"), french, "en-US", asks("English")},
        {"6 characters are a candidate", absent, text("zh-CNx"), french, "en-US", asks("English")},
        {"7 characters are none", absent, text("zh-CNxx"), french, "fr-FR"},
        {"nor is a number", absent, dword(2052), french, "fr-FR"},
        {"nor an expandable text", absent, RawValue{REG_EXPAND_SZ, text("zh-CN").bytes}, french, "fr-FR"},
        {"nor an empty one", absent, text(""), french, "fr-FR"},
    });
}

TEST(StartUp, TakesTheLanguageOfTheIniFileOrAsks)
{
    check({
        {"mapped", absent, {}, ini("2052", "2052=zh-CN"), "zh-CN"},
        {"cut to five characters", absent, {}, ini("205212", "20521=zh-CNx"), "zh-CN"},
        {"not mapped", absent, {}, ini("2052", "1036=fr-FR"), "en-US", asks("English")},
        {"mapped to no language", absent, {}, ini("2052", "2052=zh"), "en-US", asks("English")},
        {"mapped to one not installed", absent, {}, ini("1041", "1041=ja-JP"), "en-US", asks("English")},
        {.what = "no file", .becomes = "en-US", .box = asks("English"), .hasVersionKey = false},
        {.what = "declined", .box = asks("English"), .answers = {"no"}},
        {.what = "closed", .remembered = text("ja-JP"), .box = asks("English"), .answers = {}},
        {.what = "nothing installed", .box = nothingInstalled, .entries = "en-US", .folders = "fr-FR"},
        {"rebranded, nothing installed", absent, {}, "", "", nothingInstalled, "en-US", "", "Acme", "Widget"},
    });
}

TEST(StartUp, ProposesLanguagesInOrder)
{
    const char* const order[] = {"en-US", "zh-CN", "zh-TW", "ja-JP", "ko-KR", "pl-PL", "cs-CZ", "de-DE",
                                 "es-ES", "fr-FR", "hu-HU", "it-IT", "pt-BR", "ru-RU", "tr-TR"};
    Config standard;
    Config rebranded;
    ASSERT_EQ(rebranded.initCompanyName(L"Acme"), eOk);
    for (auto name = std::rbegin(order); name != std::rend(order); ++name) { // every folder is there
        const TarvoLanguage language{Wide(*name)};
        addUninstallEntry(static_cast<int>(language.velaLanguage()));
        EXPECT_EQ(standard.queryAInstalledLangInOrder(), language.language());
        EXPECT_TRUE(standard.isLanguageExist(Wide(*name)));
    }
    removeKey(HKEY_LOCAL_MACHINE, uninstall);
    EXPECT_EQ(standard.queryAInstalledLangInOrder(), -1);

    const Application application;
    const PretendedExecutable pretended(windowsPath(application.program()));
    EXPECT_EQ(rebranded.queryAInstalledLangInOrder(), -1);
    for (auto name = std::rbegin(order); name != std::rend(order); ++name) { // no entry is there
        application.addLanguage(*name);
        EXPECT_EQ(rebranded.queryAInstalledLangInOrder(), TarvoLanguage(Wide(*name)).language());
    }
}

TEST(StartUp, TellsInstalledLanguages)
{
    const Application application;
    const PretendedExecutable pretended(windowsPath(application.program()));
    writeFile(application.folder() / "de-DE" / "dll.txt", "");
    writeFile(application.folder() / "fr-FR", "a file");
    application.addLanguage("en-US");
    const std::string guid = "{5C3D71E0-B00F-1033-C10E-9E40B6D2F815}";
    makeKey(HKEY_LOCAL_MACHINE, uninstall + "\\" + guid); // without the value that counts
    KeyCounter keys;
    Config config;
    for (const std::string& name :
         {std::string(), std::string("de-DE"), std::string("fr-FR"), std::string(2000, 'x')}) {
        EXPECT_FALSE(config.isLangFolderExist(Wide(name))) << name;
        EXPECT_FALSE(config.isLangGuidExist(Wide(name))) << name;
        EXPECT_FALSE(config.isLanguageExist(Wide(name))) << name;
    }
    EXPECT_TRUE(config.isLangFolderExist(L"en-US"));
    EXPECT_FALSE(config.isLangGuidExist(Wide(guid)));
    setRaw(HKEY_LOCAL_MACHINE, uninstall + "\\" + guid, "UninstallString", dword(0));
    EXPECT_TRUE(config.isLangGuidExist(Wide(guid)));
    EXPECT_TRUE(config.isLanguageExist(L"EN-us"));
    const auto unreadable = intercept<decltype(_waccess)>(
        "_waccess", [](auto, const wchar_t*, int mode) { return mode == 4 ? -1 : 0; });
    EXPECT_FALSE(config.isLanguageExist(L"en-US"));
    EXPECT_FALSE(config.isLangFolderExist(nullptr) || config.isLangGuidExist(nullptr) ||
                 config.isLanguageExist(nullptr));
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(StartUp, HappensOnce)
{
    const auto state = [](const TarvoConfig& config) {
        return utf8(config.companyName()) + ' ' + utf8(config.productName()) + ' ' +
               utf8(config.language().shortName()) + ' ' + utf8(config.profileNameCmdLineInfo()) + ' ' +
               std::to_string(config.isInitialized());
    };
    const std::string before = tree(HKEY_CURRENT_USER, "Software");
    KeyCounter keys;
    EXPECT_EQ(state(*velaConfig()), "NORVIK TARVO unknown Default 0");
    EXPECT_EQ(startAcme(L"Work"), eOk);
    EXPECT_EQ(state(*velaConfig()), "Acme Widget en-US Work 0");
    EXPECT_EQ(InitVelaConfig(Wide(300, L'x'), L"Other", L"none", L"Home"), eOk);
    EXPECT_EQ(state(*velaConfig()), "Acme Widget en-US Work 0");
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), before); // no key is made
    EXPECT_EQ(keys.stillOpen(), 0);

    TarvoConfig copy(*velaConfig());
    copy = *velaConfig();
    EXPECT_EQ(state(copy), "Acme Widget en-US Work 0");
    EXPECT_NE(copy.productName(), velaConfig()->productName());
}

TEST(StartUp, FailsForGood)
{
    int asked = 0;
    const auto vanishing =
        intercept<decltype(_waccess)>("_waccess", [&](auto real, const wchar_t* path, int mode) {
            return ++asked == 2 ? -1 : real(path, mode); // there when the language is chosen, then gone
        });
    EXPECT_EQ(startAcme(), eRegistryError);
    EXPECT_EQ(startAcme(), eInvalidInput);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(utf8(velaConfig()->productName()), "Widget"); // nothing is rolled back
    Config config;
    EXPECT_EQ(config.verifyResourcePath(), eOk); // of the process's language
    const PretendedExecutable unknown("");
    EXPECT_EQ(config.verifyResourcePath(), eInvalidInput);
}

} // namespace
