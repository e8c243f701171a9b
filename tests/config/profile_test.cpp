// The key paths of the subtrees, and the current profile.
#include "support/test.h"

namespace {

using enum TarvoConfig::Error;
using enum TarvoConfig::Path;

std::optional<RawValue> currentProfile()
{
    return getRaw(HKEY_CURRENT_USER, profilesKey, "");
}

const std::pair<TarvoConfig::Path, unsigned long (*)(wchar_t*)> getters[] = {
    {eProductRoot, GetRegistryProductNameRootKey},
    {eVersionRoot, GetRegistryVersionRootKey},
    {eLanguageRoot, GetVelaRegistryLanguageRootKey},
    {eProfilesRoot, GetRegistryProfilesRootKey},
    {eCurrentProfile, GetVelaRegistryCurrentProfileRootKey}};

/// Checks the key path of each subtree. The library must return an empty string instead of a key
/// path of more than 1023 characters.
void expectLayout(const std::string& productRoot)
{
    const std::string language = productRoot + "\\2018\\en-US";
    const std::string keys[] = {productRoot,
                                productRoot + "\\2018",
                                language,
                                language + "\\Profiles",
                                language + "\\Profiles\\Work",
                                language + "\\Applications",
                                language + "\\Recent File List",
                                language + "\\Settings",
                                language + "\\Settings\\UserConfig"};
    setRaw(HKEY_CURRENT_USER, keys[eProfilesRoot], "", text("Work"));
    for (int path = 0; path < 9; ++path) {
        EXPECT_EQ(rootPath(*velaConfig(), path), keys[path].size() <= 1023 ? keys[path] : "");
    }
    for (const auto& [path, getter] : getters) {
        EXPECT_EQ(textOf(getter), keys[path].size() <= 1023 ? keys[path] : "failed: ");
        EXPECT_EQ(getter(nullptr), 0U);
    }
    const std::string profile = rootPath(*velaConfig(), eCurrentProfile);
    EXPECT_EQ(textOf(GetVelaRegistryCurrentProfileConfigRootKey),
              profile.empty() || profile.size() > 1014 ? "failed: " + profile : profile + "\\Config");
}

TEST(Subtrees, HaveKeyPathsAfterStartUp)
{
    for (const auto& [path, getter] : getters) {
        EXPECT_EQ(textOf(getter) + rootPath(*velaConfig(), path), "failed: ");
    }
    ASSERT_EQ(startAcme(), eOk);
    expectLayout("Software\\Acme\\Widget");
    EXPECT_EQ(rootPath(*velaConfig(), -1) + rootPath(*velaConfig(), 9), "");
    velaConfig()->getRegRootPath(eSettings, nullptr);
    removeKey(HKEY_CURRENT_USER, profilesKey);
    EXPECT_EQ(rootPath(*velaConfig(), eCurrentProfile) + tree(HKEY_CURRENT_USER, profilesKey), "");

    wchar_t name[128];
    const std::string product(254, 'p');
    for (std::size_t length = 200; length <= 245; ++length) {
        const std::string company(length, 'c');
        Config config; // each call of buildRootPathFromProduct() appends the product to the root
        ASSERT_EQ(config.initial(Wide(company), Wide(product), L"en-US", nullptr), eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), length <= 244 ? eOk : eInvalidInput);
        *velaConfig() = config;
        expectLayout("Software\\" + company + '\\' + product + '\\' + product +
                     (length <= 244 ? '\\' + product : ""));
        const bool hasRoot = !rootPath(config, eProfilesRoot).empty();
        EXPECT_EQ(config.getCurrentProfileNameFromReg(name, nullptr), hasRoot ? eOk : eInvalidInput);
    }
}

TEST(Profile, IsReplacedByThatOfTheCommandLine)
{
    const std::string n126(126, 'n');
    const std::string n127 = n126 + 'n';
    const std::string n511(511, 'n');
    // Each row: the stored value, the name that is read from it, and whether the argument "Work" replaces the
    // stored value. If the name is empty, "Default" is returned and stored.
    const std::tuple<std::optional<RawValue>, std::string, bool> rows[] = {
        {std::nullopt, "", false},
        {text(""), "", false},
        {text("wORK"), "wORK", false},
        {text(n126), n126, true},
        {text(n127), "", true}, // 256 bytes, including its terminator
        {RawValue{REG_SZ, text(n127).bytes.substr(0, 254)}, n127, true},
        {RawValue{REG_SZ, text("Home").bytes.substr(0, 7)}, "Home", true},
        {dword('A'), "A", false},
        {text(n511), "", true},
        {text(n511 + 'n'), "", false}, // 1026 bytes
    };
    const KeyCounter keys;
    Config config;
    wchar_t name[128] = L"?";
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, nullptr), eInvalidInput); // not started
    EXPECT_EQ(config.initProfileName(L"Work"), eOk);
    EXPECT_EQ(config.getCurrentProfileNameFromReg(nullptr, Wide(profilesKey)), eInvalidInput);
    ASSERT_EQ(config.initCompanyName(L"Acme") + config.initProductName(L"Widget"), 0);
    EXPECT_EQ(config.initLanguageName(L"en-US") + config.initProfileName(L"Work"), 0);
    EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eRegistryError);
    EXPECT_EQ(utf8(name) + tree(HKEY_CURRENT_USER, profilesKey), "");
    remakeKey(HKEY_CURRENT_USER, profilesKey, "", std::nullopt);
    {
        const Patch refused = intercept<"RegSetValueExW", decltype(RegSetValueExW)>(
            [](auto...) { return LSTATUS{ERROR_ACCESS_DENIED}; });
        EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eRegistryError);
    }
    for (const auto& [stored, read, replaced] : rows) {
        SCOPED_TRACE(testing::PrintToString(stored));
        remakeKey(HKEY_CURRENT_USER, profilesKey, "", stored);
        EXPECT_EQ(config.initProfileName(nullptr) + config.initProfileName(L""), 0);
        EXPECT_EQ(currentProfile(), stored);
        EXPECT_EQ(config.initProfileName(L"Work"), eOk);
        EXPECT_EQ(currentProfile(), replaced ? text("Work") : stored);
        remakeKey(HKEY_CURRENT_USER, profilesKey, "", stored);
        EXPECT_EQ(config.getCurrentProfileNameFromReg(name, Wide(profilesKey)), eOk);
        EXPECT_EQ(utf8(name), read.empty() ? "Default" : read);
        EXPECT_EQ(currentProfile(), read.empty() ? text("Default") : stored);
    }
    const std::string longName(2000, 'x');
    EXPECT_EQ(config.initProfileName(Wide(longName)), eOk);
    EXPECT_EQ(config.initProfileName(config.profileNameCmdLineInfo()), eOk);
    EXPECT_EQ(utf8(config.profileNameCmdLineInfo()), longName);
}

} // namespace
