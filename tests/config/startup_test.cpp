// Start-up: which language the process takes, what it asks the user, and what it leaves behind.
#include "support/test.h"

#include <cstdio>
#include <io.h>

namespace {

using namespace testing_support;
using enum TarvoConfig::Error;

const std::string uninstall = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
const std::string question = "The input language is not installed, continue with ";

std::string ini(const std::string& localeId, const std::string& mapping)
{
    return "[Product]\r\nLocaleId=" + localeId + "\r\n[LocaleIdLangName]\r\n" + mapping + "\r\n";
}

struct Row
{
    std::string what;
    const wchar_t* argument = nullptr;
    std::optional<RawValue> remembered = {};
    std::string iniText = {};
    std::string becomes = {};
    bool asked = false; // whether to go on with that language
    std::vector<std::string> entries = {"en-US", "fr-FR", "zh-CN"};
    std::vector<std::string> folders = entries;
    std::string company = "norvik"; // with this product the default product
    std::string product = "Tarvo";
};

TEST(StartUp, DecidesTheLanguage)
{
    const std::string french = ini("1036", "1036=fr-FR");
    const Row rows[] = {
        {"argument before all else", L"fr-FR", text("zh-CN"), ini("2052", "2052=zh-CN"), "fr-FR"},
        {"no empty argument", L"", text("fr-FR"), "", "fr-FR"},
        {"not installed: nothing else counts", L"de-DE", text("fr-FR"), french, "en-US", true},
        {"no folder", L"de-DE", {}, "", "en-US", true, {"en-US", "de-DE"}, {"en-US"}},
        {"no entry", L"de-DE", {}, "", "fr-FR", true, {"fr-FR"}, {"en-US", "de-DE", "fr-FR"}},
        {"rebranded", L"de-DE", {}, "", "de-DE", false, {}, {"de-DE"}, "Acme"},
        {"rebranded by its product", L"de-DE", {}, "", "de-DE", false, {}, {"de-DE"}, "NORVIK", "Widget"},
        {"rebranded, no folder", L"de-DE", {}, "", "fr-FR", true, {"de-DE"}, {"fr-FR"}, "Acme"},
        {"remembered in any case", nullptr, text("ZH-cn"), french, "zh-CN"},
        {"unterminated", nullptr, RawValue{REG_SZ, text("zh-CN").bytes.substr(0, 10)}, french, "zh-CN"},
        {"not installed: no INI file", nullptr, text("ja-JP"), french, "en-US", true},
        {"6 characters are a candidate", nullptr, text("zh-CNx"), french, "en-US", true},
        {"7 characters are none", nullptr, text("zh-CNxx"), french, "fr-FR"},
        {"nor is a number", nullptr, dword(2052), french, "fr-FR"},
        {"cut to five characters", nullptr, {}, ini("205212", "20521=zh-CNx"), "zh-CN"},
        {"not mapped", nullptr, {}, ini("2052", "1036=fr-FR"), "en-US", true},
        {"mapped to one not installed", nullptr, {}, ini("1041", "1041=ja-JP"), "en-US", true},
        {"nothing says anything", nullptr, {}, "", "en-US", true},
        {"a folder without a library", L"tr-TR", {}, "", "en-US", true, {"en-US", "tr-TR"}, {"en-US"}},
        {"a file for a folder", L"hu-HU", {}, "", "en-US", true, {"en-US", "hu-HU"}, {"en-US"}},
        {"an entry without what counts", L"ja-JP", {}, "", "en-US", true, {"en-US"}, {"en-US", "ja-JP"}},
    };
    const Application application;
    const Patch pretended = pretendExecutable(windowsPath(application.program()));
    writeFile(application.folder() / "tr-TR" / "dll.txt", "");
    writeFile(application.folder() / "hu-HU", "a file");
    std::string box;
    const Patch message = intercept<"MessageBoxW", decltype(MessageBoxW)>(
        [&](auto, HWND, LPCWSTR shown, LPCWSTR caption, UINT) {
            box = utf8(caption) + ": " + utf8(shown);
            return IDYES;
        });
    KeyCounter keys;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        box.clear();
        removeKey(HKEY_LOCAL_MACHINE, uninstall);
        removeKey(HKEY_CURRENT_USER, "Software");
        makeKey(HKEY_LOCAL_MACHINE, uninstall + "\\{5C3D71E0-B00F-1041-C10E-9E40B6D2F815}");
        application.writeIni(row.iniText);
        for (const std::string& language : row.folders) {
            application.addLanguage(language);
        }
        for (const std::string& language : row.entries) {
            addUninstallEntry(static_cast<int>(TarvoLanguage(Wide(language)).velaLanguage()));
        }
        const std::string key = "Software\\" + row.company + "\\" + row.product + "\\2018";
        if (row.remembered) {
            setRaw(HKEY_CURRENT_USER, key, "CurVer", *row.remembered);
        }
        Config config;
        EXPECT_EQ(config.initCompanyName(Wide(row.company)) + config.initProductName(Wide(row.product)), 0);
        EXPECT_EQ(config.initLanguageName(row.argument), eOk);
        EXPECT_EQ(utf8(config.language().shortName()), row.becomes);
        const std::string asked = row.product + ": " + question + utf8(config.language().globalName()) + '?';
        EXPECT_EQ(box, row.asked ? asked : "");
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, key, "CurVer"),
                  row.remembered ? text(row.becomes) : row.remembered);
        for (const std::string& language : row.folders) {
            std::filesystem::remove_all(application.folder() / language);
        }
    }
    EXPECT_EQ(keys.stillOpen(), 0);
}

/// A launcher: starts up, and prints its message box's style and the language that it took.
const ChildPart launch("launch", [](const std::vector<std::string>& arguments) {
    const Patch box =
        intercept<"MessageBoxW", decltype(MessageBoxW)>([](auto real, HWND owner, auto... rest) {
            std::printf("%x%s ", std::get<2>(std::tuple(rest...)), owner ? " owned" : "");
            std::fflush(stdout);
            return real(owner, rest...);
        });
    const TarvoConfig::Error error = InitVelaConfig(L"Acme", L"Widget", Wide(arguments.at(0)), nullptr);
    std::printf("%s", utf8(GetCurrentLanguageShortName()).c_str());
    return static_cast<int>(error);
});

TEST(StartUp, ShowsMessageBoxesAndEndsTheProcess)
{
    const std::string key = "Software\\Acme\\Widget\\2018";
    const std::string invalidName =
        "The input initial language name is not a valid short language name.The program will exit.";
    // The argument; the one language installed; the answers; the box; its style and, where the process goes
    // on, the language.
    using Answers = std::vector<std::string>;
    const std::tuple<std::string, std::string, Answers, std::string, std::string> rows[] = {
        {"en", "en-US", {"ok"}, invalidName, "10 "},
        {"", "", {"ok"}, "Could't find any installed languages!", "10 "},
        {"de-DE", "fr-FR", {"yes"}, question + "French?", "24 fr-FR"},
        {"de-DE", "fr-FR", {"no"}, question + "French?", "24 "},
        {"de-DE", "zh-CN", {}, question + "Simplified Chinese?", "24 "}, // closed
    };
    int number = 0;
    for (const auto& [argument, installed, answers, box, output] : rows) {
        SCOPED_TRACE(++number);
        const Application application(std::to_string(number));
        if (!installed.empty()) {
            application.addLanguage(installed);
        }
        setRaw(HKEY_CURRENT_USER, key, "CurVer", text("ja-JP"));
        const ChildResult result = launch.run(application.program(), {argument}, {{}, answers});
        const bool goesOn = output.size() > 3;
        EXPECT_EQ(result.exitCode, goesOn ? 0 : 1);
        EXPECT_EQ(result.output, output);
        EXPECT_EQ(result.boxes, (std::vector<ShownBox>{{"Widget", box}}));
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, key, "CurVer"), text(goesOn ? installed : "ja-JP"));
    }
}

TEST(StartUp, ProposesLanguagesInOrder)
{
    const char* const order[] = {"en-US", "zh-CN", "zh-TW", "ja-JP", "ko-KR", "pl-PL", "cs-CZ", "de-DE",
                                 "es-ES", "fr-FR", "hu-HU", "it-IT", "pt-BR", "ru-RU", "tr-TR"};
    Config config;
    EXPECT_EQ(config.queryAInstalledLangInOrder(), -1);
    const Wide overLong(std::string(2000, 'x'));
    for (const wchar_t* const name : {L"", static_cast<const wchar_t*>(nullptr), +overLong}) {
        EXPECT_FALSE(config.isLangFolderExist(name) || config.isLangGuidExist(name) ||
                     config.isLanguageExist(name));
    }
    for (auto name = std::rbegin(order); name != std::rend(order); ++name) { // every folder is there
        const TarvoLanguage language{Wide(*name)};
        addUninstallEntry(static_cast<int>(language.velaLanguage()));
        EXPECT_EQ(config.queryAInstalledLangInOrder(), language.language());
        EXPECT_TRUE(config.isLanguageExist(Wide(*name)));
    }
    const Application application;
    const Patch pretended = pretendExecutable(windowsPath(application.program()));
    EXPECT_EQ(config.queryAInstalledLangInOrder(), -1); // every entry is there, and no folder
}

TEST(StartUp, HappensOnce)
{
    const auto state = [](const TarvoConfig& config) {
        return utf8(config.companyName()) + ' ' + utf8(config.productName()) + ' ' +
               utf8(config.language().shortName()) + ' ' + utf8(config.profileNameCmdLineInfo()) + ' ' +
               std::to_string(config.isInitialized());
    };
    const std::string before = tree(HKEY_CURRENT_USER, "Software");
    EXPECT_EQ(state(*velaConfig()), "NORVIK TARVO unknown Default 0");
    EXPECT_EQ(startAcme(L"Work"), eOk);
    EXPECT_EQ(InitVelaConfig(L"Other", L"Other", L"none", L"Home"), eOk);
    EXPECT_EQ(state(*velaConfig()), "Acme Widget en-US Work 0");
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), before); // no key is made

    TarvoConfig copy(*velaConfig());
    copy = *velaConfig();
    EXPECT_EQ(state(copy), "Acme Widget en-US Work 0");
    EXPECT_NE(copy.productName(), velaConfig()->productName());
}

TEST(StartUp, FailsForGood)
{
    int asked = 0;
    const Patch vanishing = intercept<"_waccess", decltype(_waccess)>([&](auto real, auto* path, int mode) {
        return ++asked == 2 ? -1 : real(path, mode); // there when the language is chosen, then gone
    });
    EXPECT_EQ(startAcme(), eRegistryError);
    EXPECT_EQ(startAcme(), eInvalidInput);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(utf8(velaConfig()->productName()), "Widget"); // nothing is rolled back
    Config config;
    EXPECT_EQ(config.verifyResourcePath(), eOk); // of the process's language
    const Patch unknown = pretendExecutable("");
    EXPECT_EQ(config.verifyResourcePath(), eInvalidInput);
}

} // namespace
