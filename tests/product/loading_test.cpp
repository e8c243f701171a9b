// The library as it is seen from outside while it is loaded and unloaded. This program is not linked to it.
#include "support/imports.h"
#include "support/load_recorder.h"
#include "support/registry.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <gtest/gtest.h>
#include <shlobj.h>

namespace {

using namespace testing_support;

using Calls = std::vector<std::string>;

template <typename Function>
Function* functionOf(HMODULE module, const char* name)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// The system's own, which no recorder sees.
BOOL unload(HMODULE module)
{
    return functionOf<decltype(FreeLibrary)>(GetModuleHandleW(L"kernel32.dll"), "FreeLibrary")(module);
}

HMODULE load()
{
    recordedCalls.clear();
    return LoadLibraryW(Wide(libraryModule));
}

// The product object, which makes its lock first, then the entry point; and nothing of the registry.
const Calls loadCalls = {"_ZN8RkLockerC1Ev", "GetCurrentDirectoryW", "DisableThreadLibraryCalls"};

/// Starts up, reads a setting and a text of the language library, and stores a shared value.
void use(HMODULE library)
{
    const auto start = functionOf<int(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*)>(
        library, "_Z14InitVelaConfigPKwS0_S0_S0_");
    const auto localName = functionOf<const wchar_t*()>(library, "_Z27GetCurrentLanguageLocalNamev");
    const auto profile =
        functionOf<unsigned long(wchar_t*, unsigned long&)>(library, "_Z21GetCurrentProfileNamePwRm");
    const auto productName = functionOf<const wchar_t*()>(library, "_Z21GetCurrentProductNamev");
    const auto product = functionOf<void***()>(library, "_Z14velaGetProductv");
    ASSERT_TRUE(start && localName && profile && productName && product);

    const KeyCounter keys;
    wchar_t text[16] = {};
    unsigned long size = 16;
    EXPECT_EQ(utf8(productName()), "TARVO");
    EXPECT_EQ(profile(text, size), 0u);
    EXPECT_EQ(start(L"Acme", L"Widget", L"fr-FR", nullptr), 0);
    EXPECT_EQ(utf8(productName()), "Widget");
    EXPECT_EQ(utf8(localName()), "Français");
    size = 16;
    EXPECT_EQ(profile(text, size), 4u);
    EXPECT_EQ(utf8(text), "Work");
    void** const object = reinterpret_cast<void**>(product());
    void** const slots = *product();
    EXPECT_EQ(reinterpret_cast<long (*)(void*)>(slots[14])(object), 0);
    reinterpret_cast<void (*)(void*, long)>(slots[15])(object, 5);
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
        ASSERT_NE(library, nullptr);
        EXPECT_EQ(recordedCalls, loadCalls);
        use(library);
        recordedCalls.clear();
        EXPECT_TRUE(unload(library));
        EXPECT_EQ(recordedCalls, (Calls{"FreeLibrary", "_ZN8RkLockerD1Ev"}));
        EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), nullptr);
    }
}

TEST(Loading, MovesOnlyOutOfTheUserDataCacheFolder)
{
    const std::string cache = windowsPath(thisProgram().parent_path() / "UserDataCache");
    std::string otherCase = cache;
    std::transform(otherCase.begin() + 2, otherCase.end(), otherCase.begin() + 2,
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    const struct
    {
        std::string current;
        bool moves;
    } cases[] = {
        {cache, true},         {otherCase, true},
        {cache + '\\', false}, {cache + "\\a", false},
        {cache + "s", false},  {cache.substr(0, cache.size() - 1), false},
        {"", false},           {cache.substr(2), false},
    };
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
        recordedCalls.clear();
        EXPECT_TRUE(unload(library));
        EXPECT_EQ(recordedCalls, Calls{"_ZN8RkLockerD1Ev"}) << "no language library was loaded";
    }
}

} // namespace
