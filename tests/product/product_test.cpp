// The product object.
#include "support/test.h"

#include <cstdio>
#include <shlobj.h>

namespace {

using namespace testing_support;

ITarvoProduct& product = *velaGetProduct();

TEST(Product, FollowsTheConfiguration)
{
    EXPECT_EQ(utf8(product.companyName()) + utf8(product.language().shortName()), "NORVIKunknown");
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    EXPECT_EQ(utf8(product.companyName()), "Acme");
    EXPECT_EQ(&product.language(), &velaConfig()->language());
    EXPECT_EQ(utf8(product.helpFilePath()), windowsPath(thisProgram().parent_path()) + "\\RKHelp.exe");
    EXPECT_EQ(utf8(product.programVersionString()) + ' ' + utf8(product.productVersionTag()), "2018 4.0");
    EXPECT_EQ(product.productNumber(), 27);
    EXPECT_EQ(product.productFlagA(), 1);
    EXPECT_EQ(product.productFlagB(), 1);
    const std::pair<const char*, long> types[] = {{"TARVO", 1}, {"tarvo", 1}, {"tarvom", 2},  {"TarvoA", 3},
                                                  {"Acme", 4},  {"TARV", 4},  {"TARVOAB", 4}, {" TARVO", 4}};
    for (const auto& [name, type] : types) {
        Config config;
        ASSERT_EQ(config.initCompanyName(L"Acme") + config.initProductName(Wide(name)), 0);
        *velaConfig() = config;
        EXPECT_EQ(product.productType(), type) << name;
        EXPECT_EQ(utf8(product.productName()), name);
        EXPECT_EQ(utf8(product.defaultProductName()), "TARVO");
    }
}

TEST(Product, SharesThreeIntegersUnderItsLock)
{
    int locks = 0;
    int unlocks = 0;
    const Patch lock = intercept<"RkLocker::lock", void(RkLocker*)>([&](auto, auto*) { ++locks; });
    const Patch unlock = intercept<"RkLocker::unlock", void(RkLocker*)>([&](auto, auto*) { ++unlocks; });
    const auto shared = [] {
        return std::to_string(product.getSharedValueA()) + ' ' + std::to_string(product.getSharedValueB()) +
               ' ' + std::to_string(product.getSharedValueC());
    };
    EXPECT_EQ(shared(), "-1 0 1");
    product.setSharedValueA(-2147483647L - 1);
    product.setSharedValueB(5);
    product.setSharedValueC(2147483647L);
    EXPECT_EQ(shared(), "-2147483648 5 2147483647");
    EXPECT_EQ(locks, 9);
    EXPECT_EQ(unlocks, 9);
}

std::string folderOf(std::size_t length)
{
    return "Z:\\" + std::string(length - 4, 'x') + '\\';
}

TEST(Product, PathsAreKeptOnceTheyFit)
{
    wchar_t languageFolder[1024];
    for (const std::size_t length : {0U, 500U, 1020U}) {
        const Patch pretended = pretendExecutable(length == 0 ? "" : folderOf(length) + "cad.exe");
        EXPECT_EQ(utf8(product.helpFilePath()), "RKHelp.exe") << length;
    }
    for (const std::size_t length : {0U, 247U, 1020U}) {
        const Patch pretended = pretendExecutable(length == 0 ? "" : folderOf(length) + "cad.exe");
        EXPECT_EQ(utf8(product.userDataCachePath()), "") << length;
        *languageFolder = L'?';
        EXPECT_EQ(GetVelaUserDataCacheLanPath(languageFolder), 0u);
        EXPECT_EQ(utf8(languageFolder), "");
    }
    for (const std::size_t length : {499U, 246U, 100U}) { // the last finds both kept
        const Patch pretended = pretendExecutable(folderOf(length) + "cad.exe");
        EXPECT_EQ(utf8(product.helpFilePath()), folderOf(499) + "RKHelp.exe");
        EXPECT_EQ(utf8(product.userDataCachePath()), length == 499 ? "" : folderOf(246) + "UserDataCache");
    }
    EXPECT_EQ(GetVelaUserDataCachePath(), product.userDataCachePath());
    EXPECT_EQ(GetVelaUserDataCacheLanPath(languageFolder), 267u);
    EXPECT_EQ(utf8(languageFolder), folderOf(246) + "UserDataCache\\unknown");
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    EXPECT_EQ(GetVelaUserDataCacheLanPath(languageFolder), 265u);
    EXPECT_EQ(utf8(languageFolder), folderOf(246) + "UserDataCache\\en-US");
    EXPECT_EQ(GetVelaUserDataCacheLanPath(nullptr), 0u);
}

const ChildPart workingDirectory("workingDirectory", [](const std::vector<std::string>&) {
    wchar_t current[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, current);
    std::fputs((utf8(current) + '|' + utf8(product.userDataCachePath())).c_str(), stdout);
    return 0;
});

TEST(Product, MovesOutOfItsUserDataCacheFolder)
{
    wchar_t documents[MAX_PATH] = {};
    SHGetFolderPathW(nullptr, CSIDL_PERSONAL | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, documents);
    const std::pair<const char*, bool> cases[] = {{"UserDataCache", true},
                                                  {"userDATAcache", true},
                                                  {"UserDataCache/Temp", false},
                                                  {"UserDataCaches", false}};
    for (const auto& [folder, moves] : cases) {
        SCOPED_TRACE(folder);
        const Application app(std::to_string(&moves - &cases[0].second));
        const auto working = app.folder() / folder;
        std::filesystem::create_directories(working);
        const std::string expected = moves ? utf8(documents) : windowsPath(working);
        EXPECT_EQ(workingDirectory.run(app.program(), {}, {working, {}}).output,
                  expected + '|' + windowsPath(app.folder() / "UserDataCache"));
    }
}

} // namespace
