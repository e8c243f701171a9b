// Version and identity functions, and the exception for client modules.
#include "support/config.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <RkUInfo.h>

#include <gtest/gtest.h>
#include <shlobj.h>

#include <memory>

namespace {

using namespace testing_support;

TEST(Version, WritesTheNumbersWhereTheyFit)
{
    const struct
    {
        decltype(&GetVerNum) write;
        bool withPrefix;
        std::string expected;
    } cases[] = {{GetVerNum, true, "VERNUM = \"2018.03.16(29562)_x64\""},
                 {GetVerNum, false, "2018.03.16(29562)_x64"},
                 {GetResVerNum, true, "VERNUM = \"\""},
                 {GetResVerNum, false, ""}};
    for (const auto& version : cases) {
        const std::string& expected = version.expected;
        SCOPED_TRACE(expected);
        const auto written = [&](std::size_t size) {
            wchar_t buffer[65] = {L'?'};
            buffer[size] = L'!';
            version.write(buffer, static_cast<unsigned long>(size), version.withPrefix);
            EXPECT_EQ(buffer[size], L'!') << size;
            return size == 0 ? "" : utf8(buffer);
        };
        EXPECT_EQ(written(64), expected);
        EXPECT_EQ(written(expected.size() + 1), expected);
        EXPECT_EQ(written(expected.size()), "");
        EXPECT_EQ(written(0), "");
        version.write(nullptr, 64, version.withPrefix);
    }
}

TEST(Version, ProgramName)
{
    const std::string longFolder = "Z:\\" + std::string(1009, 'x') + '\\';
    const std::pair<std::string, std::string> cases[] = {{"C:\\Apps\\Cad\\cad.exe", "cad"},
                                                         {"C:\\Apps\\a.b.exe", "a.b"},
                                                         {"C:\\a.b\\cad", "cad"},
                                                         {"C:/Apps/Cad/cad.exe", "cad"},
                                                         {"cad.exe", "cad.exe"},
                                                         {"C:\\Apps/cad.exe", "Apps/cad"},
                                                         {"C:\\.exe", ""},
                                                         {"C:\\ä€😀.exe", "ä€😀"},
                                                         {longFolder + "12345.exe", "12345"},
                                                         {longFolder + "123456.exe", ""},
                                                         {"", ""}};
    for (const auto& [path, name] : cases) {
        SCOPED_TRACE(path);
        const PretendedExecutable pretended(path);
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
    EXPECT_EQ(GetVelaProgramPath(nullptr), 0u);
    const std::string expected = windowsPath(thisProgram().parent_path()) + '\\';
    EXPECT_EQ(GetVelaProgramPath(folder), expected.size());
    EXPECT_EQ(utf8(folder), expected);
    EXPECT_EQ(utf8(GetServicePackageVersionString()), "SP2");
    EXPECT_EQ(utf8(GetVelaProgramVersionString()), "2018");
    EXPECT_EQ(GetVelaProgramVersionString(), velaGetProduct()->programVersionString());
    const std::pair<const wchar_t*, long> ids[] = {{L"de-DE", 1031}, {L"DE-de", 1031}, {L"zh-TW", 1028},
                                                   {L"xx-XX", 1033}, {L"", 0},         {nullptr, 0}};
    for (const auto& [shortName, id] : ids) {
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
    for (const int flag : {0, 1, 5, -1}) {
        const TarvoConfigException made(L"message", flag, L"text", 42);
        const TarvoConfigException copy(made);
        for (const TarvoConfigException* exception : {&made, &copy}) {
            EXPECT_EQ(exception->isExitProcess(), flag);
            EXPECT_EQ(utf8(exception->description()), "message");
            EXPECT_EQ(exception->code(), 0);
            EXPECT_EQ(utf8(exception->className()), "RkException");
            EXPECT_EQ(utf8(exception->text()), "text");
            EXPECT_EQ(exception->number(), 42);
        }
    }
    EXPECT_EQ(utf8(TarvoConfigException(nullptr, 0, nullptr, 0).description()), "");
}

TEST(ConfigException, PassesThroughTheLibraryByPointer)
{
    const auto thrower = intercept<decltype(SHGetSpecialFolderPathW)>(
        "SHGetSpecialFolderPathW",
        [](auto /*real*/, auto...) -> BOOL { throw new TarvoConfigException(L"no folder", 3, L"", 0); });
    wchar_t buffer[1024];
    try {
        GetUserApplicationDataSupportPath(buffer);
        FAIL();
    } catch (RkException* caught) {
        const std::unique_ptr<RkException> owned(caught);
        EXPECT_EQ(utf8(owned->description()), "no folder");
        EXPECT_EQ(dynamic_cast<TarvoConfigException&>(*owned).isExitProcess(), 3);
    }
}

} // namespace
