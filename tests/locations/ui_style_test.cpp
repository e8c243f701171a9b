// The user interface style file. The user data cache folder is tested with the product object that keeps it.
#include "locations/locations.h"

namespace {

using namespace testing_support;

const std::string config = "Software\\Norvik\\TARVO\\2018\\en-US\\Settings\\UserConfig\\Config";

TEST(UiStyle, IsTheStoredOneOrTheDefault)
{
    const KeyCounter keys;
    PretendedFolders profile;
    profile.setLength(30);
    EXPECT_EQ(GetVelaUIStyleConfigFilePath(nullptr), 0u);
    EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath),
              profile.roaming + "\\NORVIK\\TARVO\\2018\\unknown\\Support\\Style.tus");
    ASSERT_EQ(startNorvik(), TarvoConfig::eOk);
    const std::string byDefault = profile.roaming + "\\Norvik\\TARVO\\2018\\en-US\\Support\\Style.tus";
    EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath), byDefault);
    makeKey(HKEY_CURRENT_USER, config);
    EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath), byDefault);

    const std::string longest(1022, 's');
    for (const std::string& stored : {std::string("Z:\\none\\My.tus"), longest}) {
        setRaw(HKEY_CURRENT_USER, config, "UIStyle", text(stored));
        EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath), stored);
    }
    for (const RawValue& none : {text(longest + 's'), text(""), RawValue{REG_SZ, ""}, dword(1)}) {
        setRaw(HKEY_CURRENT_USER, config, "UIStyle", none);
        EXPECT_EQ(leftBy(GetVelaUIStyleConfigFilePath), "");
    }
    // What cannot be read as a value counts as none.
    setRaw(HKEY_CURRENT_USER, config, "UIStyle", {REG_MULTI_SZ, Wide("a").bytes()});
    EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath), byDefault);
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(UiStyle, TheDefaultHasALimit)
{
    PretendedFolders profile;
    profile.setLength(30);
    const std::size_t added = pathOf(GetUserApplicationDataSupportPath).size() - 30;
    profile.setLength(1012 - added);
    EXPECT_EQ(pathOf(GetVelaUIStyleConfigFilePath).size(), 1021u);
    for (const std::size_t supportLength : {1013u, 1021u}) {
        profile.setLength(supportLength - added);
        const std::string support = pathOf(GetUserApplicationDataSupportPath);
        EXPECT_EQ(support.size(), supportLength);
        EXPECT_EQ(leftBy(GetVelaUIStyleConfigFilePath), support);
    }
    profile.result = FALSE;
    EXPECT_EQ(leftBy(GetVelaUIStyleConfigFilePath), "");
}

} // namespace
