// Which company and product the process runs as, and the registry roots that follow.
#include "support/test.h"

namespace {

using namespace testing_support;

using enum TarvoConfig::Error;

std::string xs(std::size_t count)
{
    return std::string(count, 'x');
}

TEST(Identity, IsResolvedFromArgumentRegistryIniAndDefault)
{
    const std::string ini = "[Product]\r\nCompanyName=Acme\r\nProductName=Widget\r\n";
    // The arguments, empty for none; what the registry remembers; the INI file; the names that follow.
    using Names = std::pair<std::string, std::string>;
    const std::tuple<Names, std::optional<RawValue>, std::string, Names> rows[] = {
        {{}, {}, "", {"Norvik", "TARVO"}},
        {{}, {}, "[Product]\r\nCompanyName=\r\nProductName=\r\n", {"Norvik", "TARVO"}},
        {{}, {}, "[Product]\r\nCompanyName=" + xs(300) + "\r\nProductName=" + xs(300), {xs(253), xs(253)}},
        {{}, {}, std::string(900000, ';') + "\r\n" + ini, {"Acme", "Widget"}},
        {{xs(254), xs(254)}, text("Gadget"), ini, {xs(254), xs(254)}},
        {{}, text(xs(254)), ini, {"Acme", xs(254)}},
        {{}, text(xs(255)), ini, {"Acme", "Widget"}},
        {{}, RawValue{REG_SZ, text(xs(255)).bytes.substr(0, 510)}, ini, {"Acme", xs(255)}}, // no terminator
        {{}, RawValue{REG_SZ, text("Gad").bytes.substr(0, 5)}, ini, {"Acme", "Gad"}},       // an odd byte
        {{}, text(""), ini, {"Acme", "Widget"}},
        {{}, dword(0x410041), ini, {"Acme", "Widget"}},
        {{}, RawValue{REG_EXPAND_SZ, text("Gadget").bytes}, "", {"Norvik", "TARVO"}},
    };
    const Application application;
    const Patch pretended = pretendExecutable(windowsPath(application.program()));
    KeyCounter keys;
    for (const auto& [arguments, remembered, iniText, becomes] : rows) {
        SCOPED_TRACE(iniText.substr(0, 100) + testing::PrintToString(remembered));
        const std::string key = "Software\\" + becomes.first;
        application.writeIni(iniText);
        removeKey(HKEY_CURRENT_USER, key);
        if (remembered) {
            setRaw(HKEY_CURRENT_USER, key, "CurProduct", *remembered);
        }
        const Wide product(arguments.second);
        Config config;
        EXPECT_EQ(config.initCompanyName(Wide(arguments.first)), eOk);
        EXPECT_EQ(config.initProductName(arguments.second.empty() ? nullptr : +product), eOk);
        EXPECT_EQ(Names(utf8(config.companyName()), utf8(config.productName())), becomes);
        // Remembered where the company's key exists; no key is made.
        EXPECT_EQ(keyExists(HKEY_CURRENT_USER, key), remembered.has_value());
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, key, "CurProduct"),
                  remembered ? text(becomes.second) : remembered);
    }
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(Identity, StepsKeepTheirOrderAndLimits)
{
    Config config;
    EXPECT_EQ(config.buildRootPathFromCompany(), eInvalidInput);
    EXPECT_EQ(config.buildRootPathFromProduct(), eInvalidInput);
    EXPECT_EQ(config.initProductName(L"Widget"), eInvalidInput);
    EXPECT_EQ(config.initLanguageName(L"en-US"), eInvalidInput);
    EXPECT_EQ(config.refreshProductName() + config.refreshLanguageName(), 0);
    EXPECT_EQ(config.initCompanyName(Wide(xs(255))), eInvalidInput);
    EXPECT_EQ(config.initCompanyName(L"Acme"), eOk);
    EXPECT_EQ(config.initCompanyName(L"Other"), eInvalidInput);
    EXPECT_EQ(config.initProductName(Wide(xs(255))), eInvalidInput);
    EXPECT_EQ(config.initProductName(L"Widget"), eOk);
    EXPECT_EQ(config.initProductName(L"Other"), eInvalidInput);
    EXPECT_EQ(utf8(config.companyName()) + utf8(config.productName()), "AcmeWidget");
}

} // namespace
