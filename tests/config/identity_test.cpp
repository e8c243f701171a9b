// Which company and product the process runs as, and the registry roots that follow.
#include "support/test.h"

namespace {

using enum TarvoConfig::Error;

using Identity = ApplicationTest;

constexpr char acme[] = "[Product]\r\nCompanyName=Acme\r\nProductName=Widget\r\n";
const std::string x253(253, 'x');
const std::string x254 = x253 + 'x';

TEST_F(Identity, IsReadFromRegistryIniAndDefault)
{
    // What the registry remembers, the INI file, and the names that follow.
    const std::tuple<std::optional<RawValue>, std::string, std::string, std::string> rows[] = {
        {{}, "", "Norvik", "TARVO"},
        {{}, "[Product]\r\nCompanyName=" + x254 + "\r\nProductName=" + x254, x253, x253},
        {text(x254), acme, "Acme", x254},
        {text(x254 + 'x'), acme, "Acme", "Widget"},
        {RawValue{REG_SZ, text(x254 + 'x').bytes.substr(0, 510)}, acme, "Acme", x254 + 'x'}, // no terminator
        {dword(0x410041), acme, "Acme", "Widget"},
        {RawValue{REG_EXPAND_SZ, text("Gadget").bytes}, "", "Norvik", "TARVO"},
    };
    for (const auto& [remembered, iniText, company, product] : rows) {
        SCOPED_TRACE(iniText + testing::PrintToString(remembered));
        const std::string key = "Software\\" + company;
        m_application.writeIni(iniText);
        removeKey(HKEY_CURRENT_USER, key);
        if (remembered) {
            setRaw(HKEY_CURRENT_USER, key, "CurProduct", *remembered);
        }
        Config config;
        EXPECT_EQ(config.initCompanyName(L"") + config.initProductName(nullptr), 0);
        EXPECT_EQ(utf8(config.companyName()) + ' ' + utf8(config.productName()), company + ' ' + product);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, key, "CurProduct"), remembered ? text(product) : remembered);
    }
}

TEST_F(Identity, OfAnArgumentKeepsOrderAndLimits)
{
    m_application.writeIni(acme);
    setRaw(HKEY_CURRENT_USER, "Software\\" + x254, "CurProduct", text("Gadget"));
    Config config;
    EXPECT_EQ(config.buildRootPathFromCompany(), eInvalidInput);
    EXPECT_EQ(config.buildRootPathFromProduct(), eInvalidInput);
    EXPECT_EQ(config.initProductName(L"Widget"), eInvalidInput);
    EXPECT_EQ(config.initLanguageName(L"en-US"), eInvalidInput);
    EXPECT_EQ(config.refreshProductName() + config.refreshLanguageName(), 0);
    EXPECT_EQ(config.initCompanyName(Wide(x254 + 'x')), eInvalidInput);
    EXPECT_EQ(config.initCompanyName(Wide(x254)), eOk);
    EXPECT_EQ(config.initCompanyName(L"Other"), eInvalidInput);
    EXPECT_EQ(config.initProductName(Wide(x254 + 'x')), eInvalidInput);
    EXPECT_EQ(config.initProductName(Wide(x254)), eOk);
    EXPECT_EQ(config.initProductName(L"Other"), eInvalidInput);
    EXPECT_EQ(utf8(config.companyName()) + utf8(config.productName()), x254 + x254);
    EXPECT_EQ(config.refreshProductName(), 0);
    makeKey(HKEY_CURRENT_USER, "Software\\" + x254 + '\\' + x254 + "\\2018");
    EXPECT_EQ(config.refreshProductName(), 1);
    EXPECT_EQ(config.refreshLanguageName(), 0); // of the unknown language
}

} // namespace
