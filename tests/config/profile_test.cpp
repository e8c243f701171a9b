// The registry layout and the current profile in it.
#include "support/config.h"
#include "support/registry.h"
#include "support/seam.h"

#include <gtest/gtest.h>

#include <optional>

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

TEST(Layout, NamesTheSubtreesAfterStartUp)
{
    const std::pair<int, std::string> expected[] = {
        {-1, ""},
        {0, "Software\\Acme\\Widget"},
        {1, "Software\\Acme\\Widget\\2018"},
        {2, languageRoot},
        {3, languageRoot + "\\Profiles"},
        {4, languageRoot + "\\Profiles\\Work"},
        {5, languageRoot + "\\Applications"},
        {6, languageRoot + "\\Recent File List"},
        {7, languageRoot + "\\Settings"},
        {8, languageRoot + "\\Settings\\UserConfig"},
        {9, ""},
    };
    setRaw(HKEY_CURRENT_USER, profilesKey, "", text("Work"));
    for (const auto& [path, key] : expected) {
        EXPECT_EQ(rootPath(*velaConfig(), path), "");
    }
    ASSERT_EQ(startAcme(), eOk);
    for (const auto& [path, key] : expected) {
        EXPECT_EQ(rootPath(*velaConfig(), path), key);
    }
    velaConfig()->getRegRootPath(eSettings, nullptr);

    removeKey(HKEY_CURRENT_USER, profilesKey);
    EXPECT_EQ(rootPath(*velaConfig(), eCurrentProfile), "");
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, profilesKey));
    makeKey(HKEY_CURRENT_USER, profilesKey);
    EXPECT_EQ(rootPath(*velaConfig(), eCurrentProfile), profilesKey + "\\Default");
    EXPECT_EQ(currentProfile(), text("Default"));
}

// Repetitions of the product step bring a copy's roots to lengths that no start-up gives.
TEST(Layout, AKeyPathOfMoreThan1023CharactersIsEmpty)
{
    ASSERT_EQ(startAcme(), eOk);
    for (const std::size_t versionLength : {1000U, 1001U}) {
        const std::string product(254, 'p');
        const std::string company(versionLength - 9 - 3 * (product.size() + 1) - 5, 'c');
        Config config;
        ASSERT_EQ(config.initial(Wide(company), Wide(product), L"en-US", nullptr), eOk);
        ASSERT_EQ(config.buildRootPathFromProduct(), eOk);
        ASSERT_EQ(config.buildRootPathFromProduct(), eOk);
        const std::string version = rootPath(config, eVersionRoot);
        ASSERT_EQ(version.size(), versionLength);
        const std::string profiles = rootPath(config, eProfilesRoot);
        EXPECT_EQ(profiles, version + "\\en-US\\Profiles");
        const std::string language = version + "\\en-US\\";
        EXPECT_EQ(rootPath(config, eApplications), language + "Applications");
        EXPECT_EQ(rootPath(config, eRecentFileList),
                  versionLength == 1000 ? language + "Recent File List" : "");
        EXPECT_EQ(rootPath(config, eUserConfig), "");
        for (std::size_t length = 6; length <= 8; ++length) {
            const std::string key = profiles + "\\" + std::string(length, 'n');
            setRaw(HKEY_CURRENT_USER, profiles, "", text(std::string(length, 'n')));
            EXPECT_EQ(rootPath(config, eCurrentProfile), key.size() <= 1023 ? key : "") << key.size();
        }
        EXPECT_EQ(config.initProfileName(L"Work"), eOk);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, profiles, ""), text("Work"));
    }
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

TEST(Profile, IsReadAndDefaultIsStoredWhereNoneIsNamed)
{
    const std::string n127(127, 'n');
    const std::pair<std::optional<RawValue>, std::string> rows[] = {
        {std::nullopt, ""}, // "Default" is given and stored
        {text(""), ""},
        {RawValue{REG_BINARY, ""}, ""},
        {text("Work"), "Work"},
        {text(n127.substr(1)), n127.substr(1)},
        {text(n127), ""}, // 256 bytes with its terminator
        {RawValue{REG_SZ, text(n127).bytes.substr(0, 254)}, n127},
        {RawValue{REG_SZ, text("Work").bytes.substr(0, 7)}, "Wor"},
        {RawValue{REG_EXPAND_SZ, text("%x%").bytes}, "%x%"},
        {dword('A'), "A"},
    };
    KeyCounter keys;
    const Config config;
    wchar_t name[128];
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eRegistryError);
    EXPECT_EQ(utf8(name), "");
    EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, profilesKey));
    for (const auto& [stored, expected] : rows) {
        SCOPED_TRACE(testing::PrintToString(stored));
        store(stored);
        EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eOk);
        EXPECT_EQ(utf8(name), expected.empty() ? "Default" : expected);
        EXPECT_EQ(currentProfile(), expected.empty() ? text("Default") : stored);
    }
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, nullptr), eInvalidInput); // not started
    EXPECT_EQ(config.getCurrentProfileNameFromReg(nullptr, Wide(profilesKey)), eInvalidInput);
    store(std::nullopt);
    const auto refused =
        intercept<decltype(RegSetValueExW)>("RegSetValueExW", [](auto, auto...) { return LSTATUS{5}; });
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eRegistryError);
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(Profile, OfTheCommandLineReplacesAnother)
{
    const std::string n512(512, 'n');
    const std::pair<std::optional<RawValue>, bool> rows[] = {
        {std::nullopt, false},
        {text(""), false},
        {text("wORK"), false},
        {text("Home"), true},
        {RawValue{REG_SZ, text("Home").bytes.substr(0, 8)}, true},
        {RawValue{REG_EXPAND_SZ, text("Home").bytes}, false},
        {text(n512.substr(1)), true},
        {text(n512), false}, // 1026 bytes
    };
    KeyCounter keys;
    Config config;
    ASSERT_EQ(config.initCompanyName(L"Acme"), eOk);
    ASSERT_EQ(config.initProductName(L"Widget"), eOk);
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
