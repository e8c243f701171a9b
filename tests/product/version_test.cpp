// Version and identity functions, and the exception for client modules.
#include "support/test.h"

namespace {

using namespace testing_support;

TEST(Version, WritesTheNumbersWhereTheyFit)
{
    const std::tuple<decltype(&GetVerNum), bool, std::string> cases[] = {
        {GetVerNum, true, "VERNUM = \"2018.03.16(29562)_x64\""},
        {GetVerNum, false, "2018.03.16(29562)_x64"},
        {GetResVerNum, true, "VERNUM = \"\""},
        {GetResVerNum, false, ""}};
    for (const auto& [write, withPrefix, expected] : cases) {
        SCOPED_TRACE(expected);
        for (const std::size_t size :
             {std::size_t{64}, expected.size() + 1, expected.size(), std::size_t{0}}) {
            wchar_t buffer[65] = {size == 0 ? L'\0' : L'?'};
            buffer[size] = L'!';
            write(buffer, static_cast<unsigned long>(size), withPrefix);
            EXPECT_EQ(buffer[size], L'!') << size;
            buffer[size] = 0;
            EXPECT_EQ(utf8(buffer), size > expected.size() ? expected : "") << size;
        }
        write(nullptr, 64, withPrefix);
    }
}

TEST(Version, ProgramName)
{
    const std::string longFolder = "Z:\\" + std::string(1009, 'x') + '\\';
    const std::pair<std::string, std::string> cases[] = {
        {"C:\\Apps\\Cad\\cad.exe", "cad"},
        {"C:\\Apps\\a.b.exe", "a.b"},
        {"C:\\a.b\\cad", "cad"},
        {"C:/Apps/Cad/cad.exe", "cad"},
        {"cad.exe", "cad.exe"},
        {"C:\\Apps/cad.exe", "Apps/cad"},
        {"C:\\.exe", ""},
        {"C:\\ä€😀.exe", "ä€😀"},
        {longFolder + "12345.exe", "12345"},
        {longFolder + "123456.exe", ""},
        {"", ""},
    };
    for (const auto& [path, name] : cases) {
        SCOPED_TRACE(path);
        const Patch pretended = pretendExecutable(path);
        wchar_t buffer[1024];
        const unsigned long length = GetVelaProgramName(buffer);
        EXPECT_EQ(length, Wide(name).length());
        EXPECT_EQ(length == 0 ? "" : utf8(buffer), name);
    }
    EXPECT_EQ(GetVelaProgramName(nullptr), 0u);
}

TEST(Version, IdentityBeforeAndAfterStartUp)
{
    wchar_t folder[1024];
    EXPECT_EQ(GetVelaProgramPath(folder), windowsPath(thisProgram().parent_path()).size() + 1);
    EXPECT_EQ(utf8(GetServicePackageVersionString()), "SP2");
    EXPECT_EQ(utf8(GetVelaProgramVersionString()), "2018");
    for (const auto& [shortName, id] : {std::pair(L"DE-de", 1031L),
                                        {L"xx-XX", 1033},
                                        {L"", 0},
                                        {static_cast<const wchar_t*>(nullptr), 0}}) {
        EXPECT_EQ(GetVelaLanguageIdByShortName(shortName), id) << utf8(shortName);
    }
    EXPECT_EQ(GetCurrentVelaLanguageId(), 1033);
    EXPECT_EQ(utf8(GetCurrentProductName()), "TARVO");
    ASSERT_EQ(InitVelaConfig(L"Acme", L"Widget", L"ja-JP", nullptr), TarvoConfig::eOk);
    EXPECT_EQ(GetCurrentVelaLanguageId(), 1041);
    EXPECT_EQ(utf8(GetCurrentProductName()), "Widget");
}

TEST(ConfigException, CarriesMessageFlagAndContext)
{
    const TarvoConfigException made(L"message", 5, L"text", 42);
    const std::vector<TarvoConfigException> copies(1, made);
    const TarvoConfigException& copy = copies.front();
    EXPECT_EQ(copy.isExitProcess(), 5);
    EXPECT_EQ(utf8(copy.description()) + utf8(copy.text()), "messagetext");
    EXPECT_EQ(copy.number(), 42);
    EXPECT_EQ(utf8(TarvoConfigException(nullptr, 0, nullptr, 0).description()), "");
}

} // namespace
