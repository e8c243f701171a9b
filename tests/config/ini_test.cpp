// Values of the INI files beside the executable.
#include "support/config.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <gtest/gtest.h>
#include <io.h>

namespace {

using namespace testing_support;

using enum TarvoConfig::Error;
using enum VelaVariant::VarType;

/// An application in whose folder the library looks for INI files.
class Ini : public testing::Test
{
protected:
    Application application;
    PretendedExecutable pretended{windowsPath(application.program())};
    Config config;
};

TEST_F(Ini, TextsAreCutToTheBuffer)
{
    application.writeIni("[S]\r\nlong=" + std::string(1500, 'x') + "\r\nempty=\r\n");
    const auto read = [&](const wchar_t* key, unsigned long size) {
        wchar_t out[16] = L"";
        const TarvoConfig::Error error = config.readIniString(L"S", key, out, size, L"TARVO.ini");
        return std::to_string(error) + utf8(out);
    };
    EXPECT_EQ(read(L"long", 7), "0xxxxx");
    EXPECT_EQ(read(L"LONG", 3), "0x");
    for (const unsigned long size : {0UL, 1UL, 2UL}) {
        EXPECT_EQ(read(L"long", size), "1") << size;
    }
    for (const wchar_t* const key : {L"empty", L"missing", L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_EQ(read(key, 16), "1");
    }
    wchar_t out[8];
    EXPECT_EQ(config.readIniString(L"S", L"long", nullptr, 16, L"TARVO.ini"), eNotFound);
    EXPECT_EQ(config.readIniString(nullptr, L"long", out, 8, L"TARVO.ini"), eNotFound);
    VelaVariant value;
    EXPECT_EQ(config.getIniValue(L"S", L"long", value, eString, L"TARVO.ini"), eOk);
    EXPECT_EQ(utf8(value.getString()), std::string(1021, 'x'));
    EXPECT_EQ(value.blockSize(), 2 * 1022 + 4);
}

TEST_F(Ini, NegativeNumbersCountAsMissing)
{
    application.writeIni("[S]\r\na=5\r\nb=-5\r\nc=2147483647\r\nd=2147483648\r\ne=x\r\nf=\r\n");
    const std::tuple<const char*, long, TarvoConfig::Error> expected[] = {
        {"a", 5, eOk}, {"b", -5, eNotFound},    {"c", 2147483647L, eOk}, {"d", -2147483647L - 1, eNotFound},
        {"e", 0, eOk}, {"none", -1, eNotFound},
    };
    for (const auto& [key, number, error] : expected) {
        long out = 77;
        EXPECT_EQ(config.readIniInt(L"S", Wide(key), out, L"TARVO.ini"), error) << key;
        EXPECT_EQ(out, number) << key;
    }
    long out = 77;
    EXPECT_EQ(config.readIniInt(L"", L"a", out, L"TARVO.ini"), eNotFound);
    EXPECT_EQ(config.readIniInt(L"S", nullptr, out, L"TARVO.ini"), eNotFound);
    EXPECT_EQ(config.readIniInt(L"S", L"a", out, L"none.ini"), eNotFound);
    const auto unreadable =
        intercept<decltype(_waccess)>("_waccess", [](auto, const wchar_t*, int) { return -1; });
    EXPECT_EQ(config.readIniInt(L"S", L"a", out, L"TARVO.ini"), eNotFound);
    EXPECT_EQ(out, 77);
}

TEST_F(Ini, PathsHave1022Characters)
{
    const std::string folder = windowsPath(application.folder()) + "\\";
    for (const std::size_t length :
         {folder.size() + 5, std::size_t{1022}, std::size_t{1023}, std::size_t{5000}}) {
        const std::string name(length - folder.size(), 'x');
        const bool fits = length <= 1022;
        wchar_t out[1024] = L"#";
        EXPECT_EQ(config.getIniFilePath(out, Wide(name)), fits ? eOk : eInvalidInput);
        EXPECT_TRUE(!fits || utf8(out) == folder + name) << utf8(out);
        VelaVariant value;
        EXPECT_EQ(config.getIniValue(L"S", L"a", value, eInt, Wide(name)), fits ? eNotFound : eInvalidInput);
    }
    EXPECT_EQ(config.getIniFilePath(nullptr, L"TARVO.ini"), eInvalidInput);
}

TEST_F(Ini, AFailureLeavesTheVariantAsItWas)
{
    application.writeIni("[S]\r\na=5\r\nb=-5\r\nempty=\r\n");
    VelaVariant value;
    value.setString(L"kept");
    const auto get = [&](const wchar_t* section, const wchar_t* key, VelaVariant::VarType type) {
        return config.getIniValue(section, key, value, type, L"TARVO.ini");
    };
    EXPECT_EQ(get(L"S", L"b", eInt), eNotFound);
    EXPECT_EQ(get(L"S", L"empty", eString), eNotFound);
    EXPECT_EQ(get(nullptr, L"a", eDouble), eNotFound);
    EXPECT_EQ(get(L"S", L"", eDouble), eNotFound);
    for (const int type : {0, 2, 3, 4, 6, -1}) {
        EXPECT_EQ(get(L"S", L"a", static_cast<VelaVariant::VarType>(type)), eWrongType) << type;
    }
    EXPECT_EQ(utf8(value.getString()), "kept");
    EXPECT_EQ(get(L"S", L"a", eInt), eOk);
    const auto memory =
        intercept<void*(std::size_t)>("malloc", [](auto, std::size_t) -> void* { return nullptr; });
    EXPECT_EQ(get(L"S", L"a", eInt), eOk); // its block is used again
    EXPECT_EQ(value.getInt(), 5);
}

TEST_F(Ini, ExportedValues)
{
    application.writeIni("[PartnerOEM]\r\nOther=7\r\n");
    EXPECT_EQ(GetVelaIniOEMMergeTitleValue(3), 3);
    application.writeIni("[PartnerOEM]\r\nMergeTitle=-1\r\n");
    EXPECT_EQ(GetVelaIniOEMMergeTitleValue(-3), -3);
    application.writeIni("[PartnerOEM]\r\nMergeTitle=1\r\n");
    EXPECT_EQ(GetVelaIniOEMMergeTitleValue(0), 1);
    VelaVariant value;
    EXPECT_EQ(GetVelaIniConfigValue(L"partneroem", L"mergetitle", value, eString), 1);
    EXPECT_EQ(utf8(value.getString()), "1");
    EXPECT_EQ(GetVelaIniConfigValue(L"PartnerOEM", L"none", value, eInt), 0);

    const auto prefix = [&](const char* text) {
        application.writeIni(text, "product.ini");
        return utf8(GetVelaArchitectrueCommandNamePrefix());
    };
    EXPECT_EQ(utf8(GetVelaArchitectrueCommandNamePrefix()), "");
    EXPECT_EQ(prefix("[Product]\r\nProductId=5\r\n"), "");
    EXPECT_EQ(prefix("[Product]\r\nMajorVer=2\r\n"), "");
    EXPECT_EQ(prefix("[Product]\r\nMajorVer=2\r\nProductId=2147483647\r\n"), "S22147483647_");
    EXPECT_EQ(prefix("[Product]\r\nMajorVer=3\r\nProductId=6\r\n"), "S22147483647_"); // kept
}

} // namespace
