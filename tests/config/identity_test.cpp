// Which company and product the process runs as, and the registry roots that follow.
#include "support/config.h"
#include "support/registry.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

using namespace testing_support;

using enum TarvoConfig::Error;

std::string xs(std::size_t count)
{
    return std::string(count, 'x');
}

TEST(Identity, IsResolvedFromArgumentRegistryIniAndDefault)
{
    struct Row
    {
        std::string company; // empty: none given
        std::string product;
        std::optional<RawValue> remembered;
        std::string ini;
        std::string becomesCompany;
        std::string becomesProduct;
    };
    const std::string ini = "[Product]\r\nCompanyName=Acme\r\nProductName=Widget\r\n";
    const Row rows[] = {
        {"", "", {}, "", "Norvik", "TARVO"},
        {"", "", {}, ini, "Acme", "Widget"},
        {"", "", {}, "[Product]\r\nCompanyName=\r\nProductName=\r\n", "Norvik", "TARVO"},
        {"", "", {}, "[Product]\r\nCompanyName=" + xs(300) + "\r\nProductName=" + xs(300), xs(253), xs(253)},
        {"", "", {}, std::string(1 << 20, ';') + "\r\n" + ini, "Acme", "Widget"},
        {"Other", "Thing", text("Gadget"), ini, "Other", "Thing"},
        {xs(254), xs(254), text("Gadget"), ini, xs(254), xs(254)},
        {"", "", text("Gadget"), ini, "Acme", "Gadget"},
        {"Other", "", text("Gadget"), "", "Other", "Gadget"},
        {"", "", text(xs(254)), ini, "Acme", xs(254)},
        {"", "", text(xs(255)), ini, "Acme", "Widget"},
        {"", "", RawValue{REG_SZ, text(xs(255)).bytes.substr(0, 510)}, ini, "Acme", xs(255)}, // no terminator
        {"", "", RawValue{REG_SZ, text("Gad").bytes.substr(0, 5)}, ini, "Acme", "Ga"}, // half a character
        {"", "", RawValue{REG_SZ, ""}, ini, "Acme", "Widget"},
        {"", "", text(""), ini, "Acme", "Widget"},
        {"", "", dword(0x410041), ini, "Acme", "Widget"},
        {"", "", RawValue{REG_EXPAND_SZ, text("Gadget").bytes}, "", "Norvik", "TARVO"},
    };
    const Application application;
    const PretendedExecutable pretended(windowsPath(application.program()));
    KeyCounter keys;
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "row " << &row - rows);
        const std::string key = "Software\\" + row.becomesCompany;
        application.writeIni(row.ini);
        removeKey(HKEY_CURRENT_USER, key);
        if (row.remembered) {
            setRaw(HKEY_CURRENT_USER, key, "CurProduct", *row.remembered);
        }
        const Wide company(row.company);
        const Wide product(row.product);
        Config config;
        EXPECT_EQ(config.initCompanyName(row.company.empty() ? nullptr : +company), eOk);
        EXPECT_EQ(config.initProductName(row.product.empty() ? nullptr : +product), eOk);
        EXPECT_EQ(utf8(config.companyName()), row.becomesCompany);
        EXPECT_EQ(utf8(config.productName()), row.becomesProduct);
        // Remembered where the company's key exists; no key is made.
        EXPECT_EQ(keyExists(HKEY_CURRENT_USER, key), row.remembered.has_value());
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, key, "CurProduct"),
                  row.remembered ? text(row.becomesProduct) : row.remembered);
    }
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(Identity, StepsKeepTheirOrderAndLimits)
{
    Config config;
    for (const wchar_t* const name : {L"", L"Widget"}) {
        EXPECT_EQ(config.buildRootPathFromCompany(), eInvalidInput);
        EXPECT_EQ(config.buildRootPathFromProduct(), eInvalidInput);
        EXPECT_EQ(config.initProductName(name), eInvalidInput);
        EXPECT_EQ(config.initLanguageName(L"en-US"), eInvalidInput);
        EXPECT_EQ(config.initProfileName(name), eOk);
        EXPECT_EQ(config.refreshProductName() + config.refreshLanguageName(), 0);
        EXPECT_EQ(config.initCompanyName(Wide(xs(255))), eInvalidInput);
        EXPECT_EQ(utf8(config.companyName()), "NORVIK");
    }
    EXPECT_EQ(config.initCompanyName(L"Acme"), eOk);
    EXPECT_EQ(config.initCompanyName(L"Other"), eInvalidInput);
    EXPECT_EQ(config.buildRootPathFromProduct(), eInvalidInput);
    EXPECT_EQ(config.initProductName(Wide(xs(255))), eInvalidInput);
    EXPECT_EQ(utf8(config.productName()), "TARVO");
    EXPECT_EQ(config.initProductName(L"Widget"), eOk);
    EXPECT_EQ(config.initProductName(L"Other"), eInvalidInput);
    EXPECT_EQ(config.refreshProductName() + config.refreshLanguageName(), 0);
    EXPECT_EQ(utf8(config.companyName()) + utf8(config.productName()), "AcmeWidget");
}

// No name is long enough to bring the version root to its limit, but each repetition of the product step
// makes it one product longer.
TEST(Identity, TheVersionRootHas1023Characters)
{
    for (const std::size_t companyLength : {244U, 245U}) {
        const std::string longest =
            "Software\\" + xs(companyLength) + "\\" + xs(254) + "\\" + xs(254) + "\\" + xs(254) + "\\2018";
        const bool fits = longest.size() <= 1023;
        Config config;
        EXPECT_EQ(config.initCompanyName(Wide(xs(companyLength))), eOk);
        EXPECT_EQ(config.initProductName(Wide(xs(254))), eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), eOk);
        EXPECT_EQ(config.buildRootPathFromProduct(), fits ? eOk : eInvalidInput);
        const std::string root = fits ? longest : longest.substr(0, longest.size() - 255 - 5) + "\\2018";
        makeKey(HKEY_CURRENT_USER, root);
        EXPECT_EQ(config.initLanguageName(L"en-US"), eOk);
        EXPECT_EQ(getRaw(HKEY_CURRENT_USER, root, "CurVer"), text("en-US"));
    }
}

} // namespace
