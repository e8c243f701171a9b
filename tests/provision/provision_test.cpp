// CreateConfigReg: the whole tree is compared before and after.
#include "support/config.h"
#include "support/registry.h"
#include "support/seam.h"

#include <RkUInfo.h>

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

const std::string company = "Software\\Acme";
const std::string product = company + "\\Widget";
const std::string profiles = product + "\\2018\\en-US\\Profiles";

std::string software()
{
    return tree(HKEY_CURRENT_USER, "Software");
}

/// The tree that a successful call leaves, made with the system's own calls. Leaves the registry empty.
std::string provisioned(const std::string& profile, bool withCurrentProduct)
{
    removeKey(HKEY_CURRENT_USER, company);
    setRaw(HKEY_CURRENT_USER, product, "CurVer", text("2018"));
    setRaw(HKEY_CURRENT_USER, product + "\\2018", "CurVer", text("en-US"));
    setRaw(HKEY_CURRENT_USER, profiles, "", text(profile));
    if (withCurrentProduct) {
        setRaw(HKEY_CURRENT_USER, company, "CurProduct", text("Widget"));
    }
    std::string result = software();
    removeKey(HKEY_CURRENT_USER, company);
    return result;
}

class Provision : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(m_keys.stillOpen(), 0); }

    KeyCounter m_keys;
};

TEST_F(Provision, CreatesTheTreeAndThenLeavesItAlone)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const std::string expected = provisioned("Default", true);
    for (int call = 0; call < 3; ++call) {
        EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk);
        EXPECT_EQ(software(), expected);
    }
}

TEST_F(Provision, LeavesCurrentProductAloneWhereTheProductKeyExists)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const std::string expected = provisioned("Default", false);
    makeKey(HKEY_CURRENT_USER, product);
    EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk);
    EXPECT_EQ(software(), expected);
    setRaw(HKEY_CURRENT_USER, company, "CurProduct", text("Gadget"));
    EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk);
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, company, "CurProduct"), text("Gadget"));
}

TEST_F(Provision, KeepsAStoredProfileAndReplacesWhatIsNone)
{
    const std::string longest(259, 'p');
    const struct
    {
        RawValue stored;
        std::string kept;
    } cases[] = {
        {text("Work"), "Work"},
        {text(longest), longest},
        {text("draft"), "draft"},
        {text(longest + 'p'), "Draft"},
        {text(""), "Draft"},
        {{REG_SZ, ""}, "Draft"},
        {dword(7), "Draft"},
        {{REG_BINARY, Wide("Work").bytes()}, "Draft"},
        {{REG_EXPAND_SZ, Wide("Work").bytes()}, "Draft"},
        {{REG_SZ, Wide("Work").bytes().substr(0, 8)}, "Work"}, // without its terminator
    };
    ASSERT_EQ(startAcme(L"Draft"), TarvoConfig::eOk);
    for (const auto& [stored, kept] : cases) {
        SCOPED_TRACE(testing::PrintToString(stored));
        const std::string expected = provisioned(kept, false);
        setRaw(HKEY_CURRENT_USER, profiles, "", stored);
        EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk);
        EXPECT_EQ(software(), expected);
    }
}

TEST_F(Provision, StoresAStartUpProfileWhole)
{
    const std::string profile(300, 'p');
    ASSERT_EQ(startAcme(Wide(profile)), TarvoConfig::eOk);
    const std::string expected = provisioned(profile, true);
    EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk);
    EXPECT_EQ(software(), expected);
    EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk);
    EXPECT_EQ(software(), expected);
}

TEST_F(Provision, BeforeStartUpOnlyAnExistingCompanyIsTold)
{
    const std::string before = software();
    EXPECT_EQ(CreateConfigReg(), TarvoConfig::eRegistryError);
    EXPECT_EQ(software(), before);
    setRaw(HKEY_CURRENT_USER, "Software\\NORVIK", "CurProduct", text("TARVO"));
    const std::string expected = software();
    removeKey(HKEY_CURRENT_USER, "Software\\NORVIK");
    makeKey(HKEY_CURRENT_USER, "Software\\NORVIK");
    EXPECT_EQ(CreateConfigReg(), TarvoConfig::eRegistryError);
    EXPECT_EQ(software(), expected);
}

TEST_F(Provision, ARegistryThatRefuses)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const std::string before = software();
    {
        const auto refusing = intercept<decltype(RegCreateKeyExW)>(
            "RegCreateKeyExW", [](auto /*real*/, auto...) -> LSTATUS { return ERROR_ACCESS_DENIED; });
        EXPECT_EQ(CreateConfigReg(), TarvoConfig::eRegistryError);
        EXPECT_EQ(software(), before);
        makeKey(HKEY_CURRENT_USER, company);
        EXPECT_EQ(CreateConfigReg(), TarvoConfig::eRegistryError);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, company, "CurProduct"), text("Widget"));
        EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, product));
        makeKey(HKEY_CURRENT_USER, product);
        EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk) << "the product key exists";
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, product, "CurVer"), text("2018"));
        EXPECT_FALSE(keyExists(HKEY_CURRENT_USER, product + "\\2018"));
    }
    const auto refusing = intercept<decltype(RegSetValueExW)>(
        "RegSetValueExW", [](auto /*real*/, auto...) -> LSTATUS { return ERROR_ACCESS_DENIED; });
    EXPECT_EQ(CreateConfigReg(), TarvoConfig::eOk);
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, profiles, ""), std::nullopt);
}

} // namespace
