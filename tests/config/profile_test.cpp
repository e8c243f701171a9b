// The registry layout and the current profile in it.
#include "support/test.h"

namespace {

using namespace testing_support;

using enum TarvoConfig::Error;
using enum TarvoConfig::Path;
const std::string languageRoot = "Software\\Acme\\Widget\\2018\\en-US";
const std::string profilesKey = languageRoot + "\\Profiles";

std::string rootPath(const TarvoConfig& config, int path)
{
    wchar_t key[1024] = L"#";
    config.getRegRootPath(static_cast<TarvoConfig::Path>(path), key);
    return utf8(key);
}

std::optional<RawValue> currentProfile()
{
    return getRaw(HKEY_CURRENT_USER, profilesKey, "");
}

/// Gives the profiles key a stored default value, or makes it without one.
void store(const std::optional<RawValue>& value)
{
    removeKey(HKEY_CURRENT_USER, profilesKey);
    makeKey(HKEY_CURRENT_USER, profilesKey);
    if (value) {
        setRaw(HKEY_CURRENT_USER, profilesKey, "", *value);
    }
}

TEST(Layout, NamesTheSubtreesAfterStartUp)
{
    const std::string expected[] = {"Software\\Acme\\Widget",
                                    "Software\\Acme\\Widget\\2018",
                                    languageRoot,
                                    profilesKey,
                                    profilesKey + "\\Work",
                                    languageRoot + "\\Applications",
                                    languageRoot + "\\Recent File List",
                                    languageRoot + "\\Settings",
                                    languageRoot + "\\Settings\\UserConfig"};
    store(text("Work"));
    EXPECT_EQ(rootPath(*velaConfig(), eProductRoot) + rootPath(*velaConfig(), eCurrentProfile), "");
    ASSERT_EQ(startAcme(), eOk);
    for (int path = 0; path < 9; ++path) {
        EXPECT_EQ(rootPath(*velaConfig(), path), expected[path]);
    }
    EXPECT_EQ(rootPath(*velaConfig(), -1) + rootPath(*velaConfig(), 9), "");
    velaConfig()->getRegRootPath(eSettings, nullptr);

    removeKey(HKEY_CURRENT_USER, profilesKey);
    EXPECT_EQ(rootPath(*velaConfig(), eCurrentProfile), "");
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, profilesKey));
    store(std::nullopt);
    EXPECT_EQ(rootPath(*velaConfig(), eCurrentProfile), profilesKey + "\\Default");
    EXPECT_EQ(currentProfile(), text("Default"));
}

TEST(Layout, AKeyPathOfMoreThan1023CharactersIsEmpty)
{
    ASSERT_EQ(startAcme(), eOk);
    for (const std::size_t versionLength : {1000U, 1001U, 1023U, 1024U}) {
        SCOPED_TRACE(versionLength);
        // Repetitions of the product step bring the version root to lengths that no names give.
        const std::size_t others = std::string("Software\\\\2018").size() + 3 * std::size_t{255};
        Config config;
        ASSERT_EQ(config.initial(Wide(std::string(versionLength - others, 'c')), Wide(std::string(254, 'p')),
                                 L"en-US", nullptr),
                  eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), versionLength <= 1023 ? eOk : eInvalidInput);
        const bool fits = versionLength <= 1023;
        EXPECT_TRUE(!fits || rootPath(config, eVersionRoot).size() == versionLength);
        if (versionLength > 1001) {
            continue;
        }
        const std::string language = rootPath(config, eVersionRoot) + "\\en-US\\";
        EXPECT_EQ(rootPath(config, eApplications), language + "Applications");
        EXPECT_EQ(rootPath(config, eRecentFileList),
                  versionLength == 1000 ? language + "Recent File List" : "");
        EXPECT_EQ(rootPath(config, eUserConfig), "");
        for (std::size_t length = 6; length <= 8; ++length) {
            const std::string key = language + "Profiles\\" + std::string(length, 'n');
            setRaw(HKEY_CURRENT_USER, language + "Profiles", "", text(std::string(length, 'n')));
            EXPECT_EQ(rootPath(config, eCurrentProfile), key.size() <= 1023 ? key : "") << key.size();
        }
    }
}

TEST(Profile, IsReadAndDefaultIsStoredWhereNoneIsNamed)
{
    const std::string n127(127, 'n');
    const std::pair<std::optional<RawValue>, std::string> rows[] = {
        {std::nullopt, ""}, // "Default" is given and stored
        {text(""), ""},
        {text(n127.substr(1)), n127.substr(1)},
        {text(n127), ""}, // 256 bytes with its terminator
        {RawValue{REG_SZ, text(n127).bytes.substr(0, 254)}, n127},
        {RawValue{REG_SZ, text("Work").bytes.substr(0, 7)}, "Work"},
        {RawValue{REG_EXPAND_SZ, text("%x%").bytes}, "%x%"},
        {dword('A'), "A"},
    };
    KeyCounter keys;
    const Config config;
    wchar_t name[128];
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eRegistryError);
    EXPECT_EQ(utf8(name), "");
    for (const auto& [stored, expected] : rows) {
        SCOPED_TRACE(testing::PrintToString(stored));
        store(stored);
        EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eOk);
        EXPECT_EQ(utf8(name), expected.empty() ? "Default" : expected);
        EXPECT_EQ(currentProfile(), expected.empty() ? text("Default") : stored);
    }
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, nullptr), eInvalidInput); // not started
    EXPECT_EQ(config.getCurrentProfileNameFromReg(nullptr, Wide(profilesKey)), eInvalidInput);
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(Profile, OfTheCommandLineReplacesAnother)
{
    const std::string n512(512, 'n');
    const std::pair<std::optional<RawValue>, bool> rows[] = {
        {std::nullopt, false},
        {text(""), false},
        {text("wORK"), false},
        {RawValue{REG_SZ, text("Home").bytes.substr(0, 8)}, true},
        {RawValue{REG_EXPAND_SZ, text("Home").bytes}, false},
        {text(n512.substr(1)), true},
        {text(n512), false}, // 1026 bytes
    };
    KeyCounter keys;
    Config config;
    ASSERT_EQ(config.initCompanyName(L"Acme") + config.initProductName(L"Widget"), 0);
    ASSERT_EQ(config.initLanguageName(L"en-US"), eOk);
    EXPECT_EQ(config.initProfileName(L"Work"), eOk);
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, profilesKey));
    for (const auto& [stored, replaced] : rows) {
        SCOPED_TRACE(testing::PrintToString(stored));
        store(stored);
        EXPECT_EQ(config.initProfileName(replaced ? nullptr : L""), eOk);
        EXPECT_EQ(currentProfile(), stored);
        EXPECT_EQ(config.initProfileName(L"Work"), eOk);
        EXPECT_EQ(currentProfile(), replaced ? text("Work") : stored);
    }
    const std::string longName(2000, 'x');
    store(text("Home"));
    EXPECT_EQ(config.initProfileName(Wide(longName)), eOk);
    EXPECT_EQ(config.initProfileName(config.profileNameCmdLineInfo()), eOk);
    EXPECT_EQ(currentProfile(), text(longName));
    EXPECT_EQ(utf8(config.profileNameCmdLineInfo()), longName);
    EXPECT_EQ(keys.stillOpen(), 0);
}

} // namespace
