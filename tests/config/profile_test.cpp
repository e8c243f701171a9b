// The registry layout and the current profile in it.
#include "support/test.h"

namespace {

using namespace testing_support;
using enum TarvoConfig::Error;
using enum TarvoConfig::Path;

const std::string languageRoot = "Software\\Acme\\Widget\\2018\\en-US";
const std::string profilesKey = languageRoot + "\\Profiles";

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
    EXPECT_EQ(tree(HKEY_CURRENT_USER, profilesKey), "");
}

TEST(Layout, AKeyPathOfMoreThan1023CharactersIsEmpty)
{
    ASSERT_EQ(startAcme(), eOk);
    for (const std::size_t versionLength : {992U, 1000U, 1001U, 1023U, 1024U}) {
        SCOPED_TRACE(versionLength);
        // Repetitions of the product step bring the version root to lengths that no names give.
        const std::string company(versionLength - std::size("Software\\\\2018") + 1 - 3 * 255, 'c');
        const bool fits = versionLength <= 1023;
        Config config;
        ASSERT_EQ(config.initial(Wide(company), Wide(std::string(254, 'p')), L"en-US", nullptr), eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), fits ? eOk : eInvalidInput);
        *velaConfig() = config;
        const std::string version = rootPath(config, eVersionRoot);
        EXPECT_EQ(version.size(), fits ? versionLength : 1024 - 255);
        const std::string files = version + "\\en-US\\Recent File List";
        EXPECT_EQ(rootPath(config, eRecentFileList), files.size() <= 1023 ? files : "");
        const std::string user = version + "\\en-US\\Settings\\UserConfig";
        EXPECT_EQ(rootPath(config, eUserConfig), user.size() <= 1023 ? user : "");
        for (std::size_t length = 6; length <= 8; ++length) {
            const std::string key = version + "\\en-US\\Profiles\\" + std::string(length, 'n');
            setRaw(HKEY_CURRENT_USER, version + "\\en-US\\Profiles", "", text(std::string(length, 'n')));
            const std::string profile = rootPath(config, eCurrentProfile);
            EXPECT_EQ(profile, key.size() <= 1023 ? key : "") << key.size();
            EXPECT_EQ(textOf(GetVelaRegistryCurrentProfileConfigRootKey),
                      key.size() <= 1014 ? key + "\\Config" : "failed: " + profile);
        }
    }
}

TEST(Profile, IsReadAndThatOfTheCommandLineReplacesIt)
{
    const std::string n126(126, 'n');
    const std::string n127 = n126 + 'n';
    const std::string n511(511, 'n');
    // What is stored; what is read, nothing where "Default" is given and stored; whether "Work" replaces it.
    const std::tuple<std::optional<RawValue>, std::string, bool> rows[] = {
        {std::nullopt, "", false},
        {text(""), "", false},
        {text("wORK"), "wORK", false},
        {text(n126), n126, true},
        {text(n127), "", true}, // 256 bytes with its terminator
        {RawValue{REG_SZ, text(n127).bytes.substr(0, 254)}, n127, true},
        {RawValue{REG_SZ, text("Home").bytes.substr(0, 7)}, "Home", true},
        {RawValue{REG_EXPAND_SZ, text("%x%").bytes}, "%x%", false},
        {dword('A'), "A", false},
        {text(n511), "", true},
        {text(n511 + 'n'), "", false}, // 1026 bytes
    };
    const KeyCounter keys;
    Config config;
    wchar_t name[128] = L"?";
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, nullptr), eInvalidInput); // not started
    EXPECT_EQ(config.getCurrentProfileNameFromReg(nullptr, Wide(profilesKey)), eInvalidInput);
    ASSERT_EQ(config.initCompanyName(L"Acme") + config.initProductName(L"Widget"), 0);
    EXPECT_EQ(config.initLanguageName(L"en-US") + config.initProfileName(L"Work"), 0);
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eRegistryError);
    EXPECT_EQ(utf8(name) + tree(HKEY_CURRENT_USER, profilesKey), "");
    for (const auto& [stored, read, replaced] : rows) {
        SCOPED_TRACE(testing::PrintToString(stored));
        store(stored);
        EXPECT_EQ(config.initProfileName(nullptr) + config.initProfileName(L""), 0);
        EXPECT_EQ(currentProfile(), stored);
        EXPECT_EQ(config.initProfileName(L"Work"), eOk);
        EXPECT_EQ(currentProfile(), replaced ? text("Work") : stored);
        store(stored);
        EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eOk);
        EXPECT_EQ(utf8(name), read.empty() ? "Default" : read);
        EXPECT_EQ(currentProfile(), read.empty() ? text("Default") : stored);
    }
    const std::string longName(2000, 'x');
    store(text("Home"));
    EXPECT_EQ(config.initProfileName(Wide(longName)), eOk);
    EXPECT_EQ(config.initProfileName(config.profileNameCmdLineInfo()), eOk);
    EXPECT_EQ(currentProfile(), text(longName));
    EXPECT_EQ(utf8(config.profileNameCmdLineInfo()), longName);
}

} // namespace
