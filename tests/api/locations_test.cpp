// The user's folders, and the paths and the profile name that are read from the registry. product_test.cpp
// tests the user data cache folder, and profile_test.cpp tests the registry key paths.
#include "support/test.h"

#include <cstring>
#include <shlobj.h>

namespace {

using enum TarvoConfig::Error;
using enum TarvoConfig::Path;

using PathFunction = unsigned long (*)(wchar_t* const);

const std::string norvikRoot = "Software\\Norvik\\TARVO\\2018\\en-US";
const std::string profiles = norvikRoot + "\\Profiles";
const std::string failed = "failed: ";

/// Starts as the default product, whose names are "Norvik" and "TARVO".
TarvoConfig::Error startNorvik()
{
    addUninstallEntry(1033);
    return InitVelaConfig(nullptr, nullptr, L"en-US", nullptr);
}

/// Each function's path ends with `added`. The part before it is the path in the row with the index `below`
/// or, if `below` is -1, a system folder.
const struct
{
    PathFunction folder;
    int below;
    const char* added;
} levels[] = {
    {GetUserApplicationDataPath, -1, "\\"},
    {GetUserApplicationDataComanyPath, 0, "Norvik\\"},
    {GetUserApplicationDataProductPath, 1, "TARVO\\"},
    {GetUserApplicationDataVersionPath, 2, "2018\\"},
    {GetUserApplicationDataLanguagePath, 3, "en-US\\"},
    {GetUserApplicationDataSupportPath, 4, "Support\\"},
    {GetUserApplicationDataPlottersPath, 4, "Plotters\\"},
    {GetUserApplicationDataCrashReportPath, 4, "CrashReport\\"},
    {GetUserApplicationDataPrintstylePath, 4, "Printstyle\\"},
    {GetVelaUIStyleConfigFilePath, 5, "Style.tus"},
    {GetUserLocalApplicationDataPath, -1, "\\"},
    {GetUserLocalApplicationDataComanyPath, 10, "Norvik\\"},
    {GetUserLocalApplicationDataProductPath, 11, "TARVO\\"},
    {GetUserLocalApplicationDataVersionPath, 12, "2018\\"},
    {GetUserLocalApplicationDataLanguagePath, 13, "en-US\\"},
    {GetUserLocalApplicationDataTemplatePath, 14, "Template"},
};

class UserFolders : public testing::Test
{
protected:
    std::string m_roaming = "Z:\\Roaming";
    std::string m_local = "Z:\\Local";
    BOOL m_found = TRUE;
    const Patch m_pretended = intercept<"SHGetSpecialFolderPathW", decltype(SHGetSpecialFolderPathW)>(
        [this](auto /*real*/, HWND owner, LPWSTR path, int id, BOOL create) {
            EXPECT_TRUE(owner == nullptr && create == FALSE);
            EXPECT_TRUE(id == CSIDL_APPDATA || id == CSIDL_LOCAL_APPDATA) << id;
            const Wide folder(id == CSIDL_APPDATA ? m_roaming : m_local);
            std::copy_n(+folder, folder.length() + 1, path);
            return m_found;
        });
};

TEST_F(UserFolders, AppendTheirNamesUpTo1021Characters)
{
    ASSERT_EQ(startNorvik(), eOk);
    for (std::size_t length = 960; length <= 1020; ++length) {
        m_roaming = "Z:\\R" + std::string(length - 4, 'x');
        m_local = "Z:\\L" + std::string(length - 4, 'x');
        std::vector<std::string> expected;
        for (const auto& [folder, below, added] : levels) {
            const std::string start = below >= 0         ? expected[static_cast<std::size_t>(below)]
                                      : expected.empty() ? m_roaming
                                                         : m_local;
            const bool fits = start.size() + std::strlen(added) <= 1021;
            expected.push_back(start.starts_with(failed) ? start : fits ? start + added : failed + start);
            EXPECT_EQ(textOf(folder), expected.back()) << length;
        }
    }
}

TEST_F(UserFolders, AreInTheFoldersOfTheSystem)
{
    EXPECT_EQ(textOf(GetVelaUIStyleConfigFilePath),
              m_roaming + "\\NORVIK\\TARVO\\2018\\unknown\\Support\\Style.tus"); // before start-up
    m_roaming = "Z:/x/";
    EXPECT_EQ(textOf(GetUserApplicationDataPath), m_roaming);
    for (const BOOL found : {TRUE, FALSE}) { // the system returns an empty path, or fails
        m_roaming = m_local = found ? "" : "left over";
        m_found = found;
        for (const auto& level : levels) {
            EXPECT_EQ(textOf(level.folder), failed);
            EXPECT_EQ(level.folder(nullptr), 0U);
        }
    }
}

TEST_F(UserFolders, AreOverriddenByStoredPaths)
{
    const std::string longest(1022, 's');
    const std::string standard = m_roaming + "\\Norvik\\TARVO\\2018\\en-US\\Support\\Style.tus";
    // The stored value, and the paths that must be returned for the custom resource file and the style file.
    const std::tuple<RawValue, std::string, std::string> rows[] = {
        {text("Z:\\none\\a.rk"), "Z:\\none\\a.rk", "Z:\\none\\a.rk"},
        {text(longest), longest, longest},
        {text(longest + 's'), failed, failed},
        {text(""), failed, failed},
        {{REG_BINARY, Wide("a").bytes()}, failed, failed},
        {{REG_EXPAND_SZ, Wide("a").bytes()}, failed, standard}, // ignored
    };
    ASSERT_EQ(startNorvik(), eOk);
    setRaw(HKEY_CURRENT_USER, profiles, "", text("Work"));
    for (const auto& [stored, resources, style] : rows) {
        setRaw(HKEY_CURRENT_USER, profiles + "\\Work\\CommonSettings", "CustomResFile", stored);
        setRaw(HKEY_CURRENT_USER, norvikRoot + "\\Settings\\UserConfig\\Config", "UIStyle", stored);
        EXPECT_EQ(textOf(GetCustomResFileName), resources);
        EXPECT_EQ(textOf(GetVelaUIStyleConfigFilePath), style);
    }
    EXPECT_EQ(GetCustomResFileName(nullptr), 0U);
}

TEST(GetCurrentProfileName, ReportsTheSizeThatItNeeds)
{
    const std::string longest(299, 'p');
    // The stored value and the buffer's size, followed by the expected name ("-" for none) and the expected
    // reported size.
    const std::tuple<std::optional<RawValue>, unsigned long, std::string, unsigned long> rows[] = {
        {text("Grün"), 5, "Grün", 5},
        {text("Grün"), 4, "-", 5},
        {text(longest), 300, longest, 300},
        {text(""), 0, "-", 1},
        {RawValue{REG_BINARY, Wide("Work").bytes()}, 300, "-", 0},
        {std::nullopt, 300, "-", 0},
    };
    unsigned long size = 300;
    EXPECT_EQ(GetCurrentProfileName(nullptr, size) + size, 0U) << "before start-up";
    ASSERT_EQ(startNorvik(), eOk);
    for (const auto& [stored, given, written, becomes] : rows) {
        SCOPED_TRACE(testing::PrintToString(stored));
        remakeKey(HKEY_CURRENT_USER, profiles, "", stored);
        wchar_t buffer[301] = L"-";
        size = given;
        EXPECT_EQ(GetCurrentProfileName(buffer, size), written == "-" ? 0 : Wide(written).length());
        EXPECT_EQ(utf8(buffer), written);
        EXPECT_EQ(GetCurrentProfileName(nullptr, size), 0U);
        EXPECT_EQ(size, becomes);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, profiles, ""), stored) << "a read changed the registry";
    }
}

} // namespace
