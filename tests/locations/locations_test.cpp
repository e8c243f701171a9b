// The user's folders, the registry key paths and what is read from them. The user data cache folder is tested
// with the product object that keeps it.
#include "support/test.h"

#include <shlobj.h>

namespace {

using namespace testing_support;
using enum TarvoConfig::Error;

using PathFunction = unsigned long (*)(wchar_t* const);

/// Start-up as the default product, with the names "Norvik" and "TARVO".
TarvoConfig::Error startNorvik()
{
    addUninstallEntry(1033);
    return InitVelaConfig(nullptr, nullptr, L"en-US", nullptr);
}

std::string failed(const std::string& left = {})
{
    return "failed: " + left;
}

/// Each function with the position of the level below it, whose folder it begins with, and the path that it
/// adds to that.
constexpr struct
{
    PathFunction folder;
    int below;
    bool isLocal;
    const char* added;
} levels[] = {
    {GetUserApplicationDataPath, -1, false, ""},
    {GetUserApplicationDataComanyPath, 0, false, "Norvik\\"},
    {GetUserApplicationDataProductPath, 1, false, "Norvik\\TARVO\\"},
    {GetUserApplicationDataVersionPath, 2, false, "Norvik\\TARVO\\2018\\"},
    {GetUserApplicationDataLanguagePath, 3, false, "Norvik\\TARVO\\2018\\en-US\\"},
    {GetUserApplicationDataSupportPath, 4, false, "Norvik\\TARVO\\2018\\en-US\\Support\\"},
    {GetUserApplicationDataPlottersPath, 4, false, "Norvik\\TARVO\\2018\\en-US\\Plotters\\"},
    {GetUserApplicationDataCrashReportPath, 4, false, "Norvik\\TARVO\\2018\\en-US\\CrashReport\\"},
    {GetUserApplicationDataPrintstylePath, 4, false, "Norvik\\TARVO\\2018\\en-US\\Printstyle\\"},
    {GetUserLocalApplicationDataPath, -1, true, ""},
    {GetUserLocalApplicationDataComanyPath, 9, true, "Norvik\\"},
    {GetUserLocalApplicationDataProductPath, 10, true, "Norvik\\TARVO\\"},
    {GetUserLocalApplicationDataVersionPath, 11, true, "Norvik\\TARVO\\2018\\"},
    {GetUserLocalApplicationDataLanguagePath, 12, true, "Norvik\\TARVO\\2018\\en-US\\"},
    {GetUserLocalApplicationDataTemplatePath, 13, true, "Norvik\\TARVO\\2018\\en-US\\Template"},
};

class UserFolders : public testing::Test
{
protected:
    void setLength(std::size_t length) { roaming = local = "Z:\\" + std::string(length - 3, 'x'); }

    std::string roaming = "C:\\Users\\user\\AppData\\Roaming";
    std::string local = "C:\\Users\\user\\AppData\\Local";
    bool found = true;

    const Patch pretended = intercept<"SHGetSpecialFolderPathW", decltype(SHGetSpecialFolderPathW)>(
        [this](auto /*real*/, HWND owner, LPWSTR path, int id, BOOL create) -> BOOL {
            EXPECT_TRUE(owner == nullptr && create == FALSE);
            EXPECT_TRUE(id == CSIDL_APPDATA || id == CSIDL_LOCAL_APPDATA) << id;
            const Wide folder(id == CSIDL_APPDATA ? roaming : local);
            std::copy_n(+folder, folder.length() + 1, path);
            return found ? TRUE : FALSE;
        });
};

TEST_F(UserFolders, FollowTheNames)
{
    EXPECT_EQ(textOf(GetUserApplicationDataLanguagePath), roaming + "\\NORVIK\\TARVO\\2018\\unknown\\");
    ASSERT_EQ(startNorvik(), eOk);
    for (const auto& level : levels) {
        EXPECT_EQ(textOf(level.folder), (level.isLocal ? local : roaming) + '\\' + level.added);
        EXPECT_EQ(level.folder(nullptr), 0U);
    }
    for (const char* const folder : {"Z:\\", "Z:/x/"}) {
        roaming = folder;
        EXPECT_EQ(textOf(GetUserApplicationDataPath), folder);
    }
    for (const bool isKnown : {true, false}) { // as nothing, or not at all
        roaming = local = isKnown ? "" : "left over";
        found = isKnown;
        for (const auto& level : levels) {
            EXPECT_EQ(textOf(level.folder), failed());
        }
    }
}

TEST_F(UserFolders, StopAtTheirLimitWithTheLevelBelow)
{
    constexpr std::size_t longest = 1021;
    for (const auto& level : levels) {
        SCOPED_TRACE(level.added);
        setLength(10);
        const std::size_t added = textOf(level.folder).size() - 10;
        setLength(longest - added);
        EXPECT_EQ(textOf(level.folder).size(), longest);
        if (level.below >= 0) {
            setLength(longest - added + 1);
            EXPECT_EQ(textOf(level.folder), failed(textOf(levels[level.below].folder)));
        }
    }
    // The default style, too, is a level, of 1021 characters at most.
    const std::size_t added = std::string("\\NORVIK\\TARVO\\2018\\unknown\\Support\\").size();
    for (const std::size_t supportLength : {1012U, 1013U, 1021U}) {
        setLength(supportLength - added);
        const std::string support = textOf(GetUserApplicationDataSupportPath);
        EXPECT_EQ(support.size(), supportLength);
        EXPECT_EQ(textOf(GetVelaUIStyleConfigFilePath),
                  supportLength == 1012 ? support + "Style.tus" : failed(support));
    }
}

const std::string languageRoot = "Software\\Norvik\\TARVO\\2018\\en-US";
const std::string profiles = languageRoot + "\\Profiles";

TEST(KeyPaths, AreThoseOfTheConfiguration)
{
    const std::tuple<PathFunction, TarvoConfig::Path, std::string> rows[] = {
        {GetRegistryProductNameRootKey, TarvoConfig::eProductRoot, ""},
        {GetRegistryVersionRootKey, TarvoConfig::eVersionRoot, ""},
        {GetVelaRegistryLanguageRootKey, TarvoConfig::eLanguageRoot, ""},
        {GetRegistryProfilesRootKey, TarvoConfig::eProfilesRoot, ""},
        {GetVelaRegistryCurrentProfileRootKey, TarvoConfig::eCurrentProfile, ""},
        {GetVelaRegistryCurrentProfileConfigRootKey, TarvoConfig::eCurrentProfile, "\\Config"}};
    const KeyCounter keys;
    for (const auto& [function, path, added] : rows) {
        EXPECT_EQ(textOf(function), failed()) << "before start-up";
        EXPECT_EQ(function(nullptr), 0U);
    }
    EXPECT_EQ(textOf(GetCustomResFileName), failed());
    ASSERT_EQ(startNorvik(), eOk);
    const std::string before = tree(HKEY_CURRENT_USER, "Software");
    EXPECT_EQ(textOf(GetVelaRegistryCurrentProfileConfigRootKey), failed()) << "no profiles key";
    EXPECT_EQ(textOf(GetCustomResFileName), failed());
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), before);
    makeKey(HKEY_CURRENT_USER, profiles);
    EXPECT_EQ(textOf(GetVelaRegistryCurrentProfileConfigRootKey), profiles + "\\Default\\Config");
    for (const auto& [function, path, added] : rows) {
        EXPECT_EQ(textOf(function), rootPath(*velaConfig(), path) + added);
    }
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(KeyPaths, TheConfigKeyHasALimit)
{
    ASSERT_EQ(startNorvik(), eOk);
    Config config; // repetitions of the product step bring it to lengths that no start-up gives
    ASSERT_EQ(config.initial(Wide(std::string(200, 'c')), Wide(std::string(254, 'p')), L"en-US", nullptr), 0);
    ASSERT_EQ(config.buildRootPathFromProduct() + config.buildRootPathFromProduct(), 0);
    *velaConfig() = config;
    for (const std::size_t nameLength : {19U, 20U}) {
        setRaw(HKEY_CURRENT_USER, textOf(GetRegistryProfilesRootKey), "", text(std::string(nameLength, 'n')));
        const std::string profile = textOf(GetVelaRegistryCurrentProfileRootKey);
        EXPECT_EQ(profile.size(), 995 + nameLength);
        EXPECT_EQ(textOf(GetVelaRegistryCurrentProfileConfigRootKey),
                  profile.size() == 1014 ? profile + "\\Config" : failed(profile));
    }
}

TEST(StoredTexts, CurrentProfileNameTellsTheSizeItNeeds)
{
    const std::string longest(299, 'p');
    // What is stored, the size given, the text written or "-", the size then.
    const std::tuple<std::optional<RawValue>, unsigned long, std::string, unsigned long> rows[] = {
        {text("Grün"), 5, "Grün", 5},
        {text("Grün"), 4, "-", 5},
        {text(longest), 300, longest, 300},
        {text(longest), 299, "-", 300},
        {text(""), 1, "", 1},
        {text(""), 0, "-", 1},
        {RawValue{REG_BINARY, Wide("Work").bytes()}, 300, "-", 0},
        {std::nullopt, 300, "-", 0},
    };
    unsigned long size = 300;
    EXPECT_EQ(GetCurrentProfileName(nullptr, size) + size, 0U) << "before start-up";
    ASSERT_EQ(startNorvik(), eOk);
    for (const auto& [stored, given, written, becomes] : rows) {
        SCOPED_TRACE(testing::PrintToString(stored));
        removeKey(HKEY_CURRENT_USER, profiles);
        makeKey(HKEY_CURRENT_USER, profiles);
        if (stored) {
            setRaw(HKEY_CURRENT_USER, profiles, "", *stored);
        }
        wchar_t buffer[301] = L"-";
        size = given;
        EXPECT_EQ(GetCurrentProfileName(buffer, size), written == "-" ? 0 : Wide(written).length());
        EXPECT_EQ(utf8(buffer), written);
        EXPECT_EQ(size, becomes);
        EXPECT_EQ(GetCurrentProfileName(nullptr, size), 0U);
        EXPECT_EQ(size, becomes);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, profiles, ""), stored) << "written by a read";
    }
}

TEST_F(UserFolders, ATextThatIsStoredDecides)
{
    const std::string longest(1022, 's');
    const std::string standard = roaming + "\\Norvik\\TARVO\\2018\\en-US\\Support\\Style.tus";
    // What is stored, the custom resource file and the style file.
    const std::tuple<RawValue, std::string, std::string> rows[] = {
        {text("Z:\\none\\a.rk"), "Z:\\none\\a.rk", "Z:\\none\\a.rk"},
        {text(longest), longest, longest},
        {text(longest + 's'), failed(), failed()},
        {text(""), failed(), failed()},
        {dword(1), failed(), failed()},
        {{REG_BINARY, Wide("a").bytes()}, failed(), failed()},
        {{REG_EXPAND_SZ, Wide("a").bytes()}, failed(), standard}, // counts as none
    };
    EXPECT_EQ(GetVelaUIStyleConfigFilePath(nullptr) + GetCustomResFileName(nullptr), 0U);
    EXPECT_EQ(textOf(GetVelaUIStyleConfigFilePath),
              roaming + "\\NORVIK\\TARVO\\2018\\unknown\\Support\\Style.tus");
    ASSERT_EQ(startNorvik(), eOk);
    EXPECT_EQ(textOf(GetVelaUIStyleConfigFilePath), standard);
    setRaw(HKEY_CURRENT_USER, profiles, "", text("Work"));
    for (const auto& [stored, resources, style] : rows) {
        setRaw(HKEY_CURRENT_USER, profiles + "\\Work\\CommonSettings", "CustomResFile", stored);
        setRaw(HKEY_CURRENT_USER, languageRoot + "\\Settings\\UserConfig\\Config", "UIStyle", stored);
        EXPECT_EQ(textOf(GetCustomResFileName), resources);
        EXPECT_EQ(textOf(GetVelaUIStyleConfigFilePath), style);
    }
}

} // namespace
