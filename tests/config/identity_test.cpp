// Tests how start-up sets the company and product. choices_test.cpp tests which source provides each name.
#include "support/test.h"

namespace {

using enum TarvoConfig::Error;

using StartUpSteps = ApplicationTest;

TEST_F(StartUpSteps, RecordTheProductInAnExistingKey)
{
    m_application.writeIni("[Product]\r\nCompanyName=Acme\r\nProductName=Widget\r\n");
    setRaw(HKEY_CURRENT_USER, acmeKey, "CurProduct", dword(7));
    Config config;
    EXPECT_EQ(config.initCompanyName(L"") + config.initProductName(nullptr), 0);
    EXPECT_EQ(utf8(config.companyName()), "Acme");
    EXPECT_EQ(getRaw(HKEY_CURRENT_USER, acmeKey, "CurProduct"), text("Widget"));
}

TEST_F(StartUpSteps, RunOnceAndInOrder)
{
    const std::string longest(254, 'x');
    setRaw(HKEY_CURRENT_USER, "Software\\" + longest, "CurProduct", text("Gadget"));
    Config config;
    EXPECT_EQ(config.buildRootPathFromCompany(), eInvalidInput);
    EXPECT_EQ(config.buildRootPathFromProduct(), eInvalidInput);
    EXPECT_EQ(config.initProductName(L"Widget"), eInvalidInput);
    EXPECT_EQ(config.initLanguageName(L"en-US"), eInvalidInput);
    EXPECT_EQ(config.refreshProductName() + config.refreshLanguageName(), 0);
    EXPECT_EQ(config.initCompanyName(Wide(longest)), eOk);
    EXPECT_EQ(config.initCompanyName(L"Other"), eInvalidInput);
    EXPECT_EQ(config.initProductName(Wide(longest)), eOk);
    EXPECT_EQ(config.initProductName(L"Other"), eInvalidInput);
    EXPECT_EQ(utf8(config.companyName()) + utf8(config.productName()), longest + longest);
    EXPECT_EQ(config.refreshProductName(), 0);
    makeKey(HKEY_CURRENT_USER, "Software\\" + longest + '\\' + longest + "\\2018");
    EXPECT_EQ(config.refreshProductName(), 1);
    EXPECT_EQ(config.refreshLanguageName(), 0); // the language is unknown
}

} // namespace
