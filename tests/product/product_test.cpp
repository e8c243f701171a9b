// The product object, as clients call it: by slot.
#include "support/child.h"
#include "support/config.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <RkUInfo.h>

#include <gtest/gtest.h>
#include <shlobj.h>

#include <cstdio>
#include <thread>
#include <type_traits>

namespace {

using namespace testing_support;

static_assert(!std::has_virtual_destructor_v<ITarvoProduct>);

/// Calls an operation as a client does that knows only the order of the table.
template <typename Result, typename... Arguments>
Result slot(std::size_t index, Arguments... arguments)
{
    void* const object = velaGetProduct();
    void* const operation = (*static_cast<void***>(object))[index];
    return reinterpret_cast<Result (*)(void*, Arguments...)>(operation)(object, arguments...);
}

std::string textOf(std::size_t index)
{
    return utf8(slot<const wchar_t*>(index));
}

/// Lets the process run as another company and product, without start-up.
void runAs(const char* company, const char* product)
{
    Config config;
    ASSERT_EQ(config.initCompanyName(Wide(company)), TarvoConfig::eOk);
    ASSERT_EQ(config.initProductName(Wide(product)), TarvoConfig::eOk);
    *velaConfig() = config;
}

void expectConstants()
{
    EXPECT_EQ(textOf(1), "TARVO");
    EXPECT_EQ(textOf(3), "2018");
    EXPECT_EQ(slot<long>(7), 27);
    EXPECT_EQ(slot<long>(8), 1);
    EXPECT_EQ(slot<long>(9), 1);
    EXPECT_EQ(textOf(10), "4.0");
}

void expectShared(long a, long b, long c)
{
    EXPECT_EQ(slot<long>(12), a);
    EXPECT_EQ(slot<long>(14), b);
    EXPECT_EQ(slot<long>(16), c);
}

TEST(Product, AnswersBySlot)
{
    const std::string folder = windowsPath(thisProgram().parent_path());
    EXPECT_EQ(textOf(0), "TARVO");
    EXPECT_EQ(textOf(2), "NORVIK");
    EXPECT_EQ(slot<long>(6), 1);
    EXPECT_EQ(utf8(slot<const TarvoLanguage*>(5)->shortName()), "unknown");
    expectConstants();
    expectShared(-1, 0, 1);

    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    EXPECT_EQ(textOf(0), "Widget");
    EXPECT_EQ(textOf(2), "Acme");
    EXPECT_EQ(textOf(4), folder + "\\RKHelp.exe");
    EXPECT_EQ(slot<const TarvoLanguage*>(5), &velaConfig()->language());
    EXPECT_EQ(utf8(slot<const TarvoLanguage*>(5)->shortName()), "en-US");
    EXPECT_EQ(slot<long>(6), 4);
    EXPECT_EQ(textOf(11), folder + "\\UserDataCache");
    expectConstants();
}

TEST(Product, TypeFollowsTheName)
{
    const std::pair<const char*, long> types[] = {{"TARVO", 1},   {"tarvo", 1},  {"tarvom", 2}, {"TARVOM", 2},
                                                  {"TarvoA", 3},  {"TARVOA", 3}, {"Acme", 4},   {"TARV", 4},
                                                  {"TARVOAB", 4}, {" TARVO", 4}};
    for (const auto& [name, type] : types) {
        runAs("Acme", name);
        EXPECT_EQ(slot<long>(6), type) << name;
        EXPECT_EQ(textOf(0), name);
        EXPECT_EQ(textOf(1), "TARVO");
    }
}

TEST(Product, SharesThreeIntegers)
{
    slot<void>(15, 5L);
    expectShared(-1, 5, 1);
    slot<void>(13, -2147483647L - 1);
    slot<void>(17, 2147483647L);
    expectShared(-2147483647L - 1, 5, 2147483647L);

    // Two threads count in turn: each waits for what the other stored.
    constexpr long rounds = 500;
    slot<void>(15, 0L);
    const auto pass = [](long mine) {
        for (long round = 0; round < rounds; ++round) {
            while (slot<long>(14) % 2 != mine) {
                std::this_thread::yield();
            }
            slot<void>(15, slot<long>(14) + 1);
        }
    };
    std::thread even(pass, 0L);
    std::thread odd(pass, 1L);
    even.join();
    odd.join();
    EXPECT_EQ(slot<long>(14), 2 * rounds);
}

std::string folderOf(std::size_t length)
{
    std::string folder = "Z:\\";
    while (folder.size() + 1 < length) {
        folder += std::string(std::min<std::size_t>(length - folder.size() - 1, 100), 'x') + '\\';
    }
    return folder.substr(0, length - 1) + '\\';
}

TEST(Product, HelpFilePathFallsBackUntilItFits)
{
    for (const std::string& executable :
         {std::string(), folderOf(500) + "cad.exe", folderOf(1020) + "cad.exe"}) {
        const PretendedExecutable pretended(executable);
        EXPECT_EQ(textOf(4), "RKHelp.exe") << executable.size();
    }
    const std::string longest = folderOf(499);
    {
        const PretendedExecutable pretended(longest + "cad.exe");
        EXPECT_EQ(textOf(4), longest + "RKHelp.exe");
    }
    EXPECT_EQ(textOf(4), longest + "RKHelp.exe") << "kept";
}

TEST(Product, UserDataCachePathIsKeptOnceItFits)
{
    wchar_t languageFolder[1024];
    for (const std::string& executable :
         {std::string(), folderOf(247) + "cad.exe", folderOf(1020) + "cad.exe"}) {
        const PretendedExecutable pretended(executable);
        EXPECT_EQ(textOf(11), "") << executable.size();
        EXPECT_EQ(utf8(GetVelaUserDataCachePath()), "");
        *languageFolder = L'?';
        EXPECT_EQ(GetVelaUserDataCacheLanPath(languageFolder), 0u);
        EXPECT_EQ(utf8(languageFolder), "");
    }
    const std::string longest = folderOf(246);
    {
        const PretendedExecutable pretended(longest + "cad.exe");
        EXPECT_EQ(textOf(11), longest + "UserDataCache");
    }
    EXPECT_EQ(textOf(11), longest + "UserDataCache") << "kept";
    EXPECT_EQ(GetVelaUserDataCachePath(), slot<const wchar_t*>(11));
    EXPECT_EQ(GetVelaUserDataCacheLanPath(languageFolder), 267u);
    EXPECT_EQ(utf8(languageFolder), longest + "UserDataCache\\unknown");
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    EXPECT_EQ(GetVelaUserDataCacheLanPath(languageFolder), 265u);
    EXPECT_EQ(utf8(languageFolder), longest + "UserDataCache\\en-US");
    EXPECT_EQ(GetVelaUserDataCacheLanPath(nullptr), 0u);
}

const ChildPart workingDirectory("workingDirectory", [](const std::vector<std::string>&) {
    wchar_t current[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, current);
    std::fputs((utf8(current) + '|' + utf8(velaGetProduct()->userDataCachePath())).c_str(), stdout);
    return 0;
});

TEST(Product, MovesOutOfItsUserDataCacheFolder)
{
    wchar_t documents[MAX_PATH] = {};
    ASSERT_GE(
        SHGetFolderPathW(nullptr, CSIDL_PERSONAL | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, documents),
        0);
    const std::pair<const char*, bool> cases[] = {{"UserDataCache", true},
                                                  {"userDATAcache", true},
                                                  {"UserDataCache/Temp", false},
                                                  {"UserDataCache2", false},
                                                  {"", false}};
    int number = 0;
    for (const auto& [folder, moves] : cases) {
        SCOPED_TRACE(folder);
        const Application app("app" + std::to_string(++number));
        const auto working = *folder == 0 ? app.folder() : app.folder() / folder;
        std::filesystem::create_directories(working);
        const std::string expected = moves ? utf8(documents) : windowsPath(working);
        EXPECT_EQ(workingDirectory.run(app.program(), {}, {working, {}}).output,
                  expected + '|' + windowsPath(app.folder() / "UserDataCache"));
    }
}

} // namespace
