// Registry key paths, the current profile's name and its custom resource file.
#include "locations/locations.h"
#include "support/config.h"

#include <algorithm>

namespace {

using namespace testing_support;

const std::string languageRoot = "Software\\Norvik\\TARVO\\2018\\en-US";
const std::string profiles = languageRoot + "\\Profiles";

constexpr PathFunction ofCurrentProfile[] = {
    GetVelaRegistryCurrentProfileRootKey, GetVelaRegistryCurrentProfileConfigRootKey, GetCustomResFileName};

class KeyPaths : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(m_keys.stillOpen(), 0); }

    KeyCounter m_keys;
};

TEST_F(KeyPaths, AreEmptyBeforeStartUp)
{
    for (const PathFunction path :
         {GetRegistryProductNameRootKey, GetRegistryVersionRootKey, GetVelaRegistryLanguageRootKey,
          GetRegistryProfilesRootKey, GetVelaRegistryCurrentProfileRootKey,
          GetVelaRegistryCurrentProfileConfigRootKey, GetCustomResFileName}) {
        EXPECT_EQ(leftBy(path), "");
        EXPECT_EQ(path(nullptr), 0u);
    }
    unsigned long size = 10;
    EXPECT_EQ(GetCurrentProfileName(nullptr, size), 0u);
    EXPECT_EQ(size, 0u);
}

TEST_F(KeyPaths, FollowTheNames)
{
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    EXPECT_EQ(pathOf(GetRegistryProductNameRootKey), "Software\\Norvik\\TARVO");
    EXPECT_EQ(pathOf(GetRegistryVersionRootKey), "Software\\Norvik\\TARVO\\2018");
    EXPECT_EQ(pathOf(GetVelaRegistryLanguageRootKey), languageRoot);
    EXPECT_EQ(pathOf(GetRegistryProfilesRootKey), profiles);
    const std::string before = tree(HKEY_CURRENT_USER, "Software");
    for (const PathFunction path : ofCurrentProfile) {
        EXPECT_EQ(leftBy(path), "") << "no profiles key";
    }
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), before);

    makeKey(HKEY_CURRENT_USER, profiles);
    EXPECT_EQ(pathOf(GetVelaRegistryCurrentProfileConfigRootKey), profiles + "\\Default\\Config");
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, profiles, ""), text("Default"));
    setRaw(HKEY_CURRENT_USER, profiles, "", text("Work"));
    EXPECT_EQ(pathOf(GetVelaRegistryCurrentProfileRootKey), profiles + "\\Work");
    EXPECT_EQ(pathOf(GetVelaRegistryCurrentProfileConfigRootKey), profiles + "\\Work\\Config");
}

/// Overwrites the version root in its place, the seventh field: no names lead to a key path near the limit.
void lengthenVersionRoot(std::size_t length)
{
    wchar_t* const root = reinterpret_cast<wchar_t* const*>(velaConfig())[6];
    std::fill_n(root, length, L'v');
    for (std::size_t at = 8; at < length; at += 100) {
        root[at] = L'\\';
    }
    root[length] = 0;
}

TEST_F(KeyPaths, TheConfigKeyHasALimit)
{
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    const std::size_t below = std::string("\\en-US\\Profiles\\Default").size();
    for (const auto& [profileLength, fits] : {std::pair(1014u, true), {1015u, false}}) {
        lengthenVersionRoot(profileLength - below);
        makeKey(HKEY_CURRENT_USER, pathOf(GetRegistryProfilesRootKey));
        const std::string profile = pathOf(GetVelaRegistryCurrentProfileRootKey);
        EXPECT_EQ(profile.size(), profileLength);
        if (fits) {
            EXPECT_EQ(pathOf(GetVelaRegistryCurrentProfileConfigRootKey), profile + "\\Config");
        } else {
            EXPECT_EQ(leftBy(GetVelaRegistryCurrentProfileConfigRootKey), profile);
        }
    }
}

/// Asks for the profile's name with a capacity; gives the name, or "-" when the buffer was left alone.
std::string profileName(unsigned long& size)
{
    wchar_t buffer[301] = {L'-'};
    const unsigned long length = GetCurrentProfileName(buffer, size);
    EXPECT_EQ(length, *buffer == L'-' ? 0 : Wide(utf8(buffer)).length());
    return utf8(buffer);
}

TEST_F(KeyPaths, CurrentProfileNameTellsTheSizeItNeeds)
{
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    for (const std::string& name :
         {std::string("Work"), std::string("Grün"), std::string(299, 'p'), std::string()}) {
        SCOPED_TRACE(name);
        setRaw(HKEY_CURRENT_USER, profiles, "", text(name));
        const auto needed = static_cast<unsigned long>(Wide(name).length() + 1);
        for (const unsigned long enough : {needed, 301ul}) {
            unsigned long size = enough;
            EXPECT_EQ(profileName(size), name);
            EXPECT_EQ(size, enough);
            EXPECT_EQ(GetCurrentProfileName(nullptr, size), 0u);
            EXPECT_EQ(size, needed);
        }
        for (const unsigned long tooSmall : {needed - 1, 0ul}) {
            unsigned long size = tooSmall;
            EXPECT_EQ(profileName(size), "-");
            EXPECT_EQ(size, needed);
        }
    }
    const auto expectNone = [] {
        unsigned long size = 301;
        EXPECT_EQ(profileName(size), "-");
        EXPECT_EQ(size, 0u);
    };
    for (const RawValue& wrong : {dword(1), RawValue{REG_BINARY, Wide("Work").bytes()}}) {
        setRaw(HKEY_CURRENT_USER, profiles, "", wrong);
        expectNone();
    }
    removeKey(HKEY_CURRENT_USER, profiles);
    makeKey(HKEY_CURRENT_USER, profiles);
    expectNone();
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, profiles, ""), std::nullopt) << "written by a read";
    removeKey(HKEY_CURRENT_USER, profiles);
    expectNone();
}

TEST_F(KeyPaths, CustomResFileNameOfTheCurrentProfile)
{
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    setRaw(HKEY_CURRENT_USER, profiles, "", text("Work"));
    EXPECT_EQ(leftBy(GetCustomResFileName), "");
    const std::string longest(1022, 'r');
    for (const std::string& name : {std::string("custom.rk"), longest}) {
        setRaw(HKEY_CURRENT_USER, profiles + "\\Work\\CommonSettings", "CustomResFile", text(name));
        EXPECT_EQ(pathOf(GetCustomResFileName), name);
    }
    for (const RawValue& none : {text(longest + 'r'), text(""), dword(1)}) {
        setRaw(HKEY_CURRENT_USER, profiles + "\\Work\\CommonSettings", "CustomResFile", none);
        EXPECT_EQ(leftBy(GetCustomResFileName), "");
    }
}

} // namespace
