// The library as it is seen from outside while it is loaded and unloaded. This program is not linked to it.
#include "support/imports.h"
#include "support/load_recorder.h"
#include "support/registry.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

using Calls = std::vector<std::string>;

template <typename Function>
Function* functionOf(HMODULE module, const char* name)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

HMODULE load()
{
    recordedCalls.clear();
    return LoadLibraryW(Wide(libraryModule));
}

/// By the system's own call, which no recorder sees; gives what the library called.
Calls unload(HMODULE library)
{
    recordedCalls.clear();
    EXPECT_TRUE(functionOf<decltype(FreeLibrary)>(GetModuleHandleW(L"kernel32.dll"), "FreeLibrary")(library));
    EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), nullptr);
    return recordedCalls;
}

// The product object, which makes its lock first, then the entry point; and nothing of the registry.
const Calls loadCalls = {"_ZN8RkLockerC1Ev", "GetCurrentDirectoryW", "DisableThreadLibraryCalls"};

/// Starts up, reads a setting and a text of the language library.
void use(HMODULE library)
{
    const auto start = functionOf<int(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*)>(
        library, "_Z14InitVelaConfigPKwS0_S0_S0_");
    const auto localName = functionOf<const wchar_t*()>(library, "_Z27GetCurrentLanguageLocalNamev");
    const auto profile =
        functionOf<unsigned long(wchar_t*, unsigned long&)>(library, "_Z21GetCurrentProfileNamePwRm");
    ASSERT_TRUE(start && localName && profile);

    const KeyCounter keys;
    wchar_t text[16] = {};
    unsigned long size = 16;
    EXPECT_EQ(profile(text, size), 0u);
    EXPECT_EQ(start(L"Acme", L"Widget", L"fr-FR", nullptr), 0);
    EXPECT_EQ(utf8(localName()), "Français");
    size = 16;
    EXPECT_EQ(profile(text, size), 4u);
    EXPECT_EQ(utf8(text), "Work");
    EXPECT_GT(keys.opened(), 0);
    EXPECT_EQ(keys.stillOpen(), 0);
}

TEST(Loading, LoadsUsesUnloadsAndLoadsAgain)
{
    const LoadRecorder recorder;
    setRaw(HKEY_CURRENT_USER, "Software\\Acme\\Widget\\2018\\fr-FR\\Profiles", "", text("Work"));
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        const HMODULE library = load();
        EXPECT_EQ(recordedCalls, loadCalls);
        use(library);
        EXPECT_EQ(unload(library), (Calls{"FreeLibrary", "_ZN8RkLockerD1Ev"}));
    }
}

TEST(Loading, MovesOnlyOutOfTheUserDataCacheFolder)
{
    const std::string folder = windowsPath(thisProgram().parent_path()) + '\\';
    const std::pair<std::string, bool> cases[] = {
        {folder + "UserDataCache", true},    {folder + "userDATAcache", true},
        {folder + "UserDataCache\\", false}, {folder + "UserDataCaches", false},
        {folder + "UserDataCach", false},    {folder.substr(2) + "UserDataCache", false}};
    const LoadRecorder recorder;
    for (const auto& [current, moves] : cases) {
        SCOPED_TRACE(current);
        pretendedWorkingDirectory = current;
        const HMODULE library = load();
        Calls expected = loadCalls;
        if (moves) {
            expected.insert(expected.begin() + 2, {"SHGetFolderPathW", "SetCurrentDirectoryW"});
        }
        EXPECT_EQ(recordedCalls, expected);
        EXPECT_EQ(unload(library), Calls{"_ZN8RkLockerD1Ev"}) << "no language library was loaded";
    }
}

} // namespace
