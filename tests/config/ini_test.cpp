// Values of the INI files beside the executable.
#include "support/test.h"

namespace {

using enum TarvoConfig::Error;
using enum VelaVariant::VarType;

class IniValues : public ApplicationTest
{
protected:
    Config config;
};

TEST_F(IniValues, AreReadAsTheRequestedType)
{
    m_application.writeIni(
        "[S]\r\na=5\r\nb=-5\r\nc=2147483648\r\nd=x\r\nempty=\r\nlong=" + std::string(1500, 'x') + "\r\n");
    const std::tuple<const wchar_t*, const wchar_t*, VelaVariant::VarType, Error, std::string> rows[] = {
        {L"S", L"A", eInt, eOk, "5"},          {L"S", L"A", eString, eOk, "5"},
        {L"S", L"d", eInt, eOk, "0"},          {L"S", L"b", eInt, eNotFound, ""},
        {L"S", L"c", eInt, eNotFound, ""},     {L"S", L"none", eInt, eNotFound, ""},
        {L"", L"a", eInt, eNotFound, ""},      {L"S", nullptr, eString, eNotFound, ""},
        {L"S", L"", eDouble, eNotFound, ""},   {L"S", L"empty", eString, eNotFound, ""},
        {L"S", L"a", eDouble, eWrongType, ""}, {L"S", L"long", eString, eOk, std::string(1021, 'x')}};
    for (const auto& [section, key, type, error, read] : rows) {
        VelaVariant value;
        value.setString(L"kept");
        EXPECT_EQ(config.getIniValue(section, key, value, type, L"TARVO.ini"), error) << utf8(key);
        const std::string text =
            value.type() == eInt ? std::to_string(value.getInt()) : utf8(value.getString());
        EXPECT_EQ(text, error == eOk ? read : "kept") << utf8(key);
    }
    long number = 77;
    EXPECT_EQ(config.readIniInt(L"S", L"a", number, L"none.ini"), eNotFound);
    EXPECT_EQ(config.readIniInt(L"", L"a", number, L"TARVO.ini"), eNotFound);
    EXPECT_EQ(number, 77);
    for (const auto& [size, expected] : {std::pair(7UL, "0xxxxx"), {3, "0x"}, {2, "1"}, {0, "1"}}) {
        wchar_t out[16] = L"";
        const Error error = config.readIniString(L"S", L"long", out, size, L"TARVO.ini");
        EXPECT_EQ(std::to_string(error) + utf8(out), expected) << size;
    }
    EXPECT_EQ(config.readIniString(L"S", L"long", nullptr, 16, L"TARVO.ini"), eNotFound);
}

TEST_F(IniValues, NeedAPathOfAtMost1022Characters)
{
    const std::string folder = windowsPath(m_application.folder()) + "\\";
    wchar_t out[1024] = L"";
    Patch folderless = pretendExecutable("cad.exe");
    EXPECT_EQ(config.getIniFilePath(out, L"TARVO.ini"), eInvalidInput);
    folderless.reset();
    for (const bool fits : {true, false}) {
        const std::string name((fits ? 1022 : 1023) - folder.size(), 'x');
        EXPECT_EQ(config.getIniFilePath(out, Wide(name)), fits ? eOk : eInvalidInput);
        EXPECT_EQ(utf8(out), folder + (fits ? name : ""));
    }
    EXPECT_EQ(config.getIniFilePath(nullptr, L"TARVO.ini"), eInvalidInput);
}

TEST_F(IniValues, SetTheMergeTitleAndTheCommandPrefix)
{
    for (const auto& [entry, title] :
         {std::pair("Other=7", -3L), {"MergeTitle=-1", -3}, {"MergeTitle=1", 1}}) {
        m_application.writeIni(std::string("[PartnerOEM]\r\n") + entry);
        EXPECT_EQ(GetVelaIniOEMMergeTitleValue(-3), title) << entry;
    }
    VelaVariant value;
    EXPECT_EQ(GetVelaIniConfigValue(L"partneroem", L"mergetitle", value, eString), 1);
    EXPECT_EQ(utf8(value.getString()), "1");
    EXPECT_EQ(GetVelaIniConfigValue(L"PartnerOEM", L"none", value, eInt), 0);
    for (const auto& [entries, prefix] : {std::pair("ProductId=5", ""),
                                          {"MajorVer=2", ""},
                                          {"MajorVer=2\r\nProductId=2147483647", "S22147483647_"},
                                          {"MajorVer=3\r\nProductId=6", "S22147483647_"}}) { // cached
        m_application.writeIni(std::string("[Product]\r\n") + entries, "product.ini");
        EXPECT_EQ(utf8(GetVelaArchitectrueCommandNamePrefix()), prefix);
    }
}

} // namespace
