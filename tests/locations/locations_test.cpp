// The user's folders, the registry key paths and what is read from them. The user data cache folder is tested
// with the product object that keeps it.
#include "support/test.h"

#include <io.h>
#include <shlobj.h>

namespace {

using namespace testing_support;

using PathFunction = unsigned long (*)(wchar_t* const);

/// What a function writes, after checking the length that it returns; behind "failed: " where that is 0.
std::string pathOf(PathFunction function)
{
    wchar_t buffer[1024] = {L'?'};
    const unsigned long length = function(buffer);
    if (length == 0) {
        return "failed: " + utf8(buffer);
    }
    EXPECT_EQ(Wide(utf8(buffer)).length(), length);
    return utf8(buffer);
}

std::string failed(const std::string& left = {})
{
    return "failed: " + left;
}

/// Start-up as the default product, with the names "Norvik" and "TARVO".
TarvoConfig::Error startNorvik()
{
    addUninstallEntry(1033);
    return InitVelaConfig(nullptr, nullptr, L"en-US", nullptr);
}

/// The roaming and the local application data folder, texts of any length; empty: the system knows of none.
struct ShellFolders
{
    std::string roaming;
    std::string local;

    /// Both the same, of that many characters.
    void setLength(std::size_t length) { roaming = local = "Z:\\" + std::string(length - 3, 'x'); }
};

/// Gives them to the library.
Patch pretend(const ShellFolders& folders)
{
    return intercept<"SHGetSpecialFolderPathW", decltype(SHGetSpecialFolderPathW)>(
        [&](auto /*real*/, HWND owner, LPWSTR path, int id, BOOL create) -> BOOL {
            EXPECT_TRUE(owner == nullptr && create == FALSE);
            EXPECT_TRUE(id == CSIDL_APPDATA || id == CSIDL_LOCAL_APPDATA) << id;
            const std::string& folder = id == CSIDL_APPDATA ? folders.roaming : folders.local;
            const Wide written(folder.empty() ? "left over" : folder);
            std::copy_n(+written, written.length() + 1, path);
            return folder.empty() ? FALSE : TRUE;
        });
}

constexpr auto roaming = &ShellFolders::roaming;
constexpr auto local = &ShellFolders::local;

/// Each function with the position of the level below it, its profile folder and the path that it adds to
/// that.
const struct
{
    PathFunction folder;
    int below;
    std::string ShellFolders::*root;
    const char* added;
} levels[] = {
    {GetUserApplicationDataPath, -1, roaming, ""},
    {GetUserApplicationDataComanyPath, 0, roaming, "Norvik\\"},
    {GetUserApplicationDataProductPath, 1, roaming, "Norvik\\TARVO\\"},
    {GetUserApplicationDataVersionPath, 2, roaming, "Norvik\\TARVO\\2018\\"},
    {GetUserApplicationDataLanguagePath, 3, roaming, "Norvik\\TARVO\\2018\\en-US\\"},
    {GetUserApplicationDataSupportPath, 4, roaming, "Norvik\\TARVO\\2018\\en-US\\Support\\"},
    {GetUserApplicationDataPlottersPath, 4, roaming, "Norvik\\TARVO\\2018\\en-US\\Plotters\\"},
    {GetUserApplicationDataCrashReportPath, 4, roaming, "Norvik\\TARVO\\2018\\en-US\\CrashReport\\"},
    {GetUserApplicationDataPrintstylePath, 4, roaming, "Norvik\\TARVO\\2018\\en-US\\Printstyle\\"},
    {GetUserLocalApplicationDataPath, -1, local, ""},
    {GetUserLocalApplicationDataComanyPath, 9, local, "Norvik\\"},
    {GetUserLocalApplicationDataProductPath, 10, local, "Norvik\\TARVO\\"},
    {GetUserLocalApplicationDataVersionPath, 11, local, "Norvik\\TARVO\\2018\\"},
    {GetUserLocalApplicationDataLanguagePath, 12, local, "Norvik\\TARVO\\2018\\en-US\\"},
    {GetUserLocalApplicationDataTemplatePath, 13, local, "Norvik\\TARVO\\2018\\en-US\\Template"},
};

TEST(UserFolders, FollowTheNames)
{
    EXPECT_NE(_waccess(Wide(pathOf(GetUserApplicationDataComanyPath)), 0), 0) << "made by a question";
    ShellFolders profile = {"C:\\Users\\user\\AppData\\Roaming", "C:\\Users\\user\\AppData\\Local"};
    const Patch pretended = pretend(profile);
    EXPECT_EQ(pathOf(GetUserApplicationDataLanguagePath),
              profile.roaming + "\\NORVIK\\TARVO\\2018\\unknown\\");
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    for (const auto& level : levels) {
        EXPECT_EQ(pathOf(level.folder), profile.*level.root + '\\' + level.added);
    }
    for (const auto& [folder, expected] : {std::pair("Z:\\", "Z:\\"), {"Z:/x/", "Z:/x/"}}) {
        profile.roaming = folder;
        EXPECT_EQ(pathOf(GetUserApplicationDataPath), expected);
    }
    profile = {};
    for (const auto& level : levels) {
        EXPECT_EQ(pathOf(level.folder), failed());
        EXPECT_EQ(level.folder(nullptr), 0u);
    }
}

TEST(UserFolders, StopAtTheirLimitWithTheLevelBelow)
{
    constexpr std::size_t longest = 1021;
    ShellFolders profile;
    const Patch pretended = pretend(profile);
    for (const auto& level : levels) {
        SCOPED_TRACE(level.added);
        profile.setLength(10);
        const std::size_t added = pathOf(level.folder).size() - 10;
        profile.setLength(longest - added);
        EXPECT_EQ(pathOf(level.folder).size(), longest);
        if (level.below >= 0) {
            profile.setLength(longest - added + 1);
            EXPECT_EQ(pathOf(level.folder), failed(pathOf(levels[level.below].folder)));
        }
    }
    // The default style, too, is a level, of 1021 characters at most.
    const std::size_t added = std::string("\\NORVIK\\TARVO\\2018\\unknown\\Support\\").size();
    for (const std::size_t supportLength : {1012u, 1013u, 1021u}) {
        profile.setLength(supportLength - added);
        const std::string support = pathOf(GetUserApplicationDataSupportPath);
        EXPECT_EQ(support.size(), supportLength);
        EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath),
                  supportLength == 1012 ? support + "Style.tus" : failed(support));
    }
}

const std::string languageRoot = "Software\\Norvik\\TARVO\\2018\\en-US";
const std::string profiles = languageRoot + "\\Profiles";

/// Each function with what it gives for the current profile "Work".
const std::pair<PathFunction, std::string> keyPaths[] = {
    {GetRegistryProductNameRootKey, "Software\\Norvik\\TARVO"},
    {GetRegistryVersionRootKey, "Software\\Norvik\\TARVO\\2018"},
    {GetVelaRegistryLanguageRootKey, languageRoot},
    {GetRegistryProfilesRootKey, profiles},
    {GetVelaRegistryCurrentProfileRootKey, profiles + "\\Work"},
    {GetVelaRegistryCurrentProfileConfigRootKey, profiles + "\\Work\\Config"},
};

TEST(KeyPaths, FollowTheNames)
{
    const KeyCounter keys;
    for (const auto& [path, expected] : keyPaths) {
        EXPECT_EQ(pathOf(path), failed()) << "before start-up";
        EXPECT_EQ(path(nullptr), 0u);
    }
    EXPECT_EQ(pathOf(GetCustomResFileName), failed());
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    const std::string before = tree(HKEY_CURRENT_USER, "Software");
    EXPECT_EQ(pathOf(GetVelaRegistryCurrentProfileConfigRootKey), failed()) << "no profiles key";
    EXPECT_EQ(pathOf(GetCustomResFileName), failed());
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), before);
    makeKey(HKEY_CURRENT_USER, profiles);
    EXPECT_EQ(pathOf(GetVelaRegistryCurrentProfileConfigRootKey), profiles + "\\Default\\Config");
    setRaw(HKEY_CURRENT_USER, profiles, "", text("Work"));
    for (const auto& [path, expected] : keyPaths) {
        EXPECT_EQ(pathOf(path), expected);
    }
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(KeyPaths, TheConfigKeyHasALimit)
{
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    Config config; // repetitions of the product step bring it to lengths that no start-up gives
    ASSERT_EQ(config.initial(Wide(std::string(200, 'c')), Wide(std::string(254, 'p')), L"en-US", nullptr), 0);
    ASSERT_EQ(config.buildRootPathFromProduct() + config.buildRootPathFromProduct(), 0);
    *velaConfig() = config;
    for (const std::size_t nameLength : {19U, 20U}) {
        setRaw(HKEY_CURRENT_USER, pathOf(GetRegistryProfilesRootKey), "", text(std::string(nameLength, 'n')));
        const std::string profile = pathOf(GetVelaRegistryCurrentProfileRootKey);
        EXPECT_EQ(profile.size(), 995 + nameLength);
        EXPECT_EQ(pathOf(GetVelaRegistryCurrentProfileConfigRootKey),
                  profile.size() == 1014 ? profile + "\\Config" : failed(profile));
    }
}

TEST(StoredTexts, CurrentProfileNameTellsTheSizeItNeeds)
{
    const auto expectName = [](unsigned long size, const std::string& left, unsigned long needed) {
        wchar_t buffer[301] = L"-";
        const unsigned long expectedSize = left == "-" ? needed : size;
        EXPECT_EQ(GetCurrentProfileName(buffer, size), left == "-" ? 0 : Wide(left).length());
        EXPECT_EQ(size, expectedSize);
        EXPECT_EQ(utf8(buffer), left);
    };
    expectName(301, "-", 0);
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    for (const std::string& name : {std::string("Grün"), std::string(299, 'p'), std::string()}) {
        SCOPED_TRACE(name);
        setRaw(HKEY_CURRENT_USER, profiles, "", text(name));
        auto needed = static_cast<unsigned long>(Wide(name).length() + 1);
        expectName(needed, name, needed);
        expectName(needed - 1, "-", needed);
        EXPECT_EQ(GetCurrentProfileName(nullptr, needed), 0u);
        EXPECT_EQ(needed, Wide(name).length() + 1);
    }
    setRaw(HKEY_CURRENT_USER, profiles, "", {REG_BINARY, Wide("Work").bytes()});
    expectName(301, "-", 0);
    removeKey(HKEY_CURRENT_USER, profiles);
    makeKey(HKEY_CURRENT_USER, profiles);
    expectName(301, "-", 0);
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, profiles, ""), std::nullopt) << "written by a read";
}

TEST(StoredTexts, CustomResFileAndUiStyle)
{
    ShellFolders profile;
    const Patch pretended = pretend(profile);
    profile.setLength(30);
    EXPECT_EQ(GetVelaUIStyleConfigFilePath(nullptr) + GetCustomResFileName(nullptr), 0u);
    EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath),
              profile.roaming + "\\NORVIK\\TARVO\\2018\\unknown\\Support\\Style.tus");
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    setRaw(HKEY_CURRENT_USER, profiles, "", text("Work"));
    const std::string config = languageRoot + "\\Settings\\UserConfig\\Config";
    const std::string longest(1022, 's');
    const std::pair<RawValue, std::string> rows[] = {{text("Z:\\none\\a.rk"), "Z:\\none\\a.rk"},
                                                     {text(longest), longest},
                                                     {text(longest + 's'), failed()},
                                                     {text(""), failed()},
                                                     {dword(1), failed()}};
    for (const auto& [stored, expected] : rows) {
        setRaw(HKEY_CURRENT_USER, profiles + "\\Work\\CommonSettings", "CustomResFile", stored);
        setRaw(HKEY_CURRENT_USER, config, "UIStyle", stored);
        EXPECT_EQ(pathOf(GetCustomResFileName), expected);
        EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath), expected);
    }
    setRaw(HKEY_CURRENT_USER, config, "UIStyle", {REG_MULTI_SZ, Wide("a").bytes()}); // counts as none
    EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath),
              profile.roaming + "\\Norvik\\TARVO\\2018\\en-US\\Support\\Style.tus");
}

} // namespace
