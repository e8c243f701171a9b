// CreateConfigReg: compares the whole tree before and after.
#include "support/test.h"

namespace {

using enum TarvoConfig::Error;

/// Returns the expected output of tree() after a successful call. Creates the keys with registry calls, and
/// then removes them.
std::string provisioned(const std::string& profile, bool withCurrentProduct)
{
    removeKey(HKEY_CURRENT_USER, acmeKey);
    setRaw(HKEY_CURRENT_USER, acmeKey + "\\Widget", "CurVer", text("2018"));
    setRaw(HKEY_CURRENT_USER, acmeKey + "\\Widget\\2018", "CurVer", text("en-US"));
    setRaw(HKEY_CURRENT_USER, profilesKey, "", text(profile));
    if (withCurrentProduct) {
        setRaw(HKEY_CURRENT_USER, acmeKey, "CurProduct", text("Widget"));
    }
    std::string result = tree(HKEY_CURRENT_USER, "Software");
    removeKey(HKEY_CURRENT_USER, acmeKey);
    return result;
}

TEST(CreateConfigReg, CreatesTheTreeOnce)
{
    const KeyCounter keys;
    const std::string before = tree(HKEY_CURRENT_USER, "Software");
    EXPECT_EQ(CreateConfigReg(), eRegistryError) << "before start-up";
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), before);
    const std::string profile(300, 'p'); // too long to be read back as a profile name
    ASSERT_EQ(startAcme(Wide(profile)), eOk);
    const std::string expected = provisioned(profile, true);
    for (int call = 0; call < 3; ++call) {
        EXPECT_EQ(CreateConfigReg(), eOk);
        EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), expected);
    }
    setRaw(HKEY_CURRENT_USER, acmeKey, "CurProduct", text("Gadget"));
    EXPECT_EQ(CreateConfigReg(), eOk);
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, acmeKey, "CurProduct"), text("Gadget"));
}

TEST(CreateConfigReg, ReplacesOnlyAnInvalidProfile)
{
    const std::string longest(259, 'p');
    const std::pair<RawValue, std::string> rows[] = {
        {text(longest), longest},
        {text(longest + 'p'), "Draft"},
        {text(""), "Draft"},
        {dword(7), "Draft"},
        {{REG_EXPAND_SZ, Wide("Work").bytes()}, "Draft"},
        {{REG_SZ, Wide("Work").bytes().substr(0, 8)}, "Work"}, // without its terminator
    };
    ASSERT_EQ(startAcme(L"Draft"), eOk);
    for (const auto& [stored, kept] : rows) {
        // setRaw creates the product key, so CreateConfigReg does not set CurProduct.
        const std::string expected = provisioned(kept, false);
        setRaw(HKEY_CURRENT_USER, profilesKey, "", stored);
        EXPECT_EQ(CreateConfigReg(), eOk);
        EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software"), expected) << testing::PrintToString(stored);
    }
}

} // namespace
