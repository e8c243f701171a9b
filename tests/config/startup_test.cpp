// Tests the questions that start-up asks, the resulting state, and failures. choices_test.cpp tests which
// source provides each name.
#include "support/test.h"

#include <io.h>

namespace {

using enum TarvoConfig::Error;

// The style and the text of each message box. 16 is MB_OK | MB_ICONERROR; 36 is MB_YESNO | MB_ICONQUESTION.
constexpr char invalidName[] =
    "16 The input initial language name is not a valid short language name.The program will exit.";
constexpr char noneInstalled[] = "16 Could't find any installed languages!";
constexpr char english[] = "36 The input language is not installed, continue with English?";
constexpr char czech[] = "36 The input language is not installed, continue with Czech?";

struct Row
{
    const wchar_t* argument = nullptr;
    std::optional<RawValue> stored = {};
    std::string iniText = {};
    std::string becomes = {}; ///< the language that is set; empty if start-up calls ExitProcess
    std::string shown = {};
    std::vector<std::string> installed = {"en-US", "fr-FR", "zh-CN"};
};

TEST(StartUp, AsksBeforeItUsesAnotherLanguage)
{
    const std::string french = "[Product]\r\nLocaleId=1036\r\n[LocaleIdLangName]\r\n1036=fr-FR\r\n";
    const Row rows[] = {
        {L"zh-CN", text("fr-FR"), french, "zh-CN"},
        {L"de-DE", text("fr-FR"), french, "en-US", english},
        {L"de-DE", text("en-US"), "", "cs-CZ", czech, {"cs-CZ"}},
        {nullptr, {}, french, "fr-FR"},
        {L"de-DE", text("fr-FR"), french, "", english, {"en-US"}},
        {L"en", text("fr-FR"), french, "", invalidName},
        {nullptr, text("fr-FR"), french, "", noneInstalled, {}},
    };
    const Row* current = nullptr;
    std::string shown;
    const Patch box = intercept<"MessageBoxW", decltype(MessageBoxW)>(
        [&](auto, HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
            EXPECT_TRUE(owner == nullptr && utf8(caption) == "Tarvo") << utf8(caption);
            shown += std::to_string(style) + ' ' + utf8(text);
            return current->becomes.empty() ? IDNO : IDYES;
        });
    const Patch end =
        intercept<"ExitProcess", decltype(ExitProcess)>([](auto, UINT exitCode) { throw exitCode; });
    const KeyCounter keys;
    for (const Row& row : rows) {
        SCOPED_TRACE(utf8(row.argument) + testing::PrintToString(row.stored));
        current = &row;
        shown.clear();
        removeKey(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft");
        removeKey(HKEY_CURRENT_USER, "Software");
        const Application application(std::to_string(&row - rows));
        const Patch pretended = pretendExecutable(windowsPath(application.program()));
        application.writeIni(row.iniText);
        for (const std::string& language : row.installed) {
            application.addLanguage(language);
            addUninstallEntry(TarvoLanguage(Wide(language)).velaLanguage());
        }
        const std::string key = "Software\\norvik\\Tarvo\\2018";
        if (row.stored) {
            setRaw(HKEY_CURRENT_USER, key, "CurVer", *row.stored);
        }
        Config config;
        EXPECT_EQ(config.initCompanyName(L"norvik") + config.initProductName(L"Tarvo"), 0);
        try {
            EXPECT_EQ(config.initLanguageName(row.argument), eOk);
            EXPECT_EQ(utf8(config.language().shortName()), row.becomes);
            EXPECT_EQ(config.refreshLanguageName() != 0, row.stored.has_value());
        } catch (UINT exitCode) {
            EXPECT_EQ(std::to_string(exitCode) + row.becomes, "1");
        }
        EXPECT_EQ(shown, row.shown);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, key, "CurVer"),
                  row.stored && !row.becomes.empty() ? text(row.becomes) : row.stored);
    }
}

TEST(StartUp, ProposesTheFirstInstalledLanguage)
{
    const char* const order[] = {"en-US", "zh-CN", "zh-TW", "ja-JP", "ko-KR", "pl-PL", "cs-CZ", "de-DE",
                                 "es-ES", "fr-FR", "hu-HU", "it-IT", "pt-BR", "ru-RU", "tr-TR"};
    Config config;
    EXPECT_FALSE(config.isLangFolderExist(nullptr) || config.isLangGuidExist(nullptr));
    for (auto name = std::rbegin(order); name != std::rend(order); ++name) { // every folder exists
        const TarvoLanguage language{Wide(*name)};
        EXPECT_FALSE(config.isLanguageExist(Wide(*name)));
        addUninstallEntry(language.velaLanguage());
        EXPECT_EQ(config.queryAInstalledLangInOrder(), language.language());
        EXPECT_TRUE(config.isLanguageExist(Wide(*name)));
    }
}

std::string state(const TarvoConfig& config)
{
    return utf8(config.companyName()) + ' ' + utf8(config.productName()) + ' ' +
           utf8(config.language().shortName()) + ' ' + utf8(config.profileNameCmdLineInfo()) + ' ' +
           std::to_string(config.isInitialized()) + ' ' + rootPath(config, TarvoConfig::eLanguageRoot);
}

TEST(StartUp, HappensOnceAndItsResultCanBeCopied)
{
    const std::string started = "Acme Widget en-US Work 0 Software\\Acme\\Widget\\2018\\en-US";
    EXPECT_EQ(startAcme(L"Work"), eOk);
    EXPECT_EQ(InitVelaConfig(L"Other", L"Other", L"none", L"Home"), eOk);
    EXPECT_EQ(state(*velaConfig()), started);
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software\\Acme"), ""); // no key is created

    TarvoConfig copy(*velaConfig());
    const wchar_t* const name = copy.productName();
    const TarvoConfig& same = copy;
    copy = same;
    EXPECT_EQ(copy.productName(), name);
    EXPECT_EQ(state(copy), started);
}

TEST(StartUp, KeepsWhatItResolvedBeforeAFailure)
{
    const std::string tooLong(255, 'x');
    const struct
    {
        std::string company, product;
        Error error;
        std::string state; ///< the state after the failure; earlier steps are not undone
        Error second;      ///< the result of starting up again
    } rows[] = {
        {tooLong, "Widget", eInvalidInput, "NORVIK TARVO unknown Default 0 ", eOk}, // no company is set
        {"Acme", tooLong, eInvalidInput, "Acme TARVO unknown Default 0 ", eInvalidInput},
        {"Acme", "Widget", eRegistryError, "Acme Widget en-US Work 0 ", eInvalidInput},
    };
    int asked = 0;
    const Patch vanishing = intercept<"_waccess", decltype(_waccess)>([&](auto real, auto* path, int mode) {
        EXPECT_EQ(mode, 4) << "not a test for reading";
        return ++asked == 2 ? -1 : real(path, mode); // the folder disappears after the language is chosen
    });
    for (const auto& row : rows) {
        SCOPED_TRACE(row.state);
        *velaConfig() = Config();
        asked = row.error == eRegistryError ? 0 : 2;
        EXPECT_EQ(InitVelaConfig(Wide(row.company), Wide(row.product), L"en-US", L"Work"), row.error);
        EXPECT_EQ(state(*velaConfig()), row.state);
        EXPECT_EQ(CreateConfigReg(), eRegistryError);
        EXPECT_EQ(tree(HKEY_CURRENT_USER, acmeKey), "");
        EXPECT_EQ(startAcme(), row.second);
    }
    const Patch unknown = pretendExecutable("");
    EXPECT_EQ(Config().verifyResourcePath(), eInvalidInput); // the program folder is unknown
}

} // namespace
