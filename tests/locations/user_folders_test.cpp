// The folders in the user's profile.
#include "locations/locations.h"
#include "support/config.h"

#include <io.h>

namespace {

using namespace testing_support;

constexpr auto roaming = &PretendedFolders::roaming;
constexpr auto local = &PretendedFolders::local;

/// Each function with the position of the level below it, its profile folder and the path that it adds to
/// that.
constexpr struct
{
    PathFunction folder;
    int below;
    std::string PretendedFolders::*root;
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
    PretendedFolders profile;
    profile.roaming = "C:\\Users\\user\\AppData\\Roaming";
    profile.local = "C:\\Users\\user\\AppData\\Local";
    EXPECT_EQ(pathOf(GetUserApplicationDataLanguagePath),
              profile.roaming + "\\NORVIK\\TARVO\\2018\\unknown\\");
    EXPECT_EQ(pathOf(GetUserLocalApplicationDataTemplatePath),
              profile.local + "\\NORVIK\\TARVO\\2018\\unknown\\Template");
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    for (const auto& level : levels) {
        profile.queries = 0;
        EXPECT_EQ(pathOf(level.folder), profile.*level.root + '\\' + level.added);
        EXPECT_EQ(profile.queries, 1);
    }
}

TEST(UserFolders, StopAtTheirLimitWithTheLevelBelow)
{
    constexpr std::size_t longest = 1021;
    constexpr std::size_t shortRoot = 10;
    PretendedFolders profile;
    for (const std::size_t nameLength : {5u, 254u}) {
        Config config;
        ASSERT_EQ(config.initCompanyName(Wide(nameLength, L'c')), TarvoConfig::eOk);
        ASSERT_EQ(config.initProductName(Wide(nameLength, L'p')), TarvoConfig::eOk);
        *velaConfig() = config;
        for (const auto& level : levels) {
            SCOPED_TRACE(level.added);
            profile.setLength(shortRoot);
            const std::size_t added = pathOf(level.folder).size() - shortRoot;
            profile.setLength(longest - added);
            EXPECT_EQ(pathOf(level.folder).size(), longest);
            if (level.below >= 0) {
                profile.setLength(longest - added + 1);
                const std::string below = pathOf(levels[level.below].folder);
                EXPECT_FALSE(below.empty());
                EXPECT_EQ(leftBy(level.folder), below);
            }
        }
    }
}

TEST(UserFolders, ProfileFolderForms)
{
    PretendedFolders profile;
    for (const auto& [folder, expected] :
         {std::pair("Z:\\", "Z:\\"), {"Z:/x/", "Z:/x/"}, {"Z:\\x", "Z:\\x\\"}, {"", ""}}) {
        profile.roaming = folder;
        profile.local = folder;
        EXPECT_EQ(pathOf(GetUserApplicationDataPath), expected);
        EXPECT_EQ(pathOf(GetUserLocalApplicationDataPath), expected);
    }
    profile.result = FALSE;
    profile.setLength(20);
    for (const auto& level : levels) {
        EXPECT_EQ(leftBy(level.folder), "");
        EXPECT_EQ(level.folder(nullptr), 0u);
    }
}

TEST(UserFolders, AreNotCreated)
{
    for (const auto& level : levels) {
        EXPECT_NE(pathOf(level.folder), "");
    }
    EXPECT_NE(_waccess(Wide(pathOf(GetUserApplicationDataComanyPath)), 0), 0);
    EXPECT_NE(_waccess(Wide(pathOf(GetUserLocalApplicationDataComanyPath)), 0), 0);
}

} // namespace
