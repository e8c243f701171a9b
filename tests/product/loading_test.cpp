// The library loaded and unloaded by a program that is not linked to it.
#include "support/registry.h"
#include "support/scratch.h"
#include "support/seam.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

template <typename Function>
Function* functionOf(HMODULE module, const char* name)
{
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(module, exportedName(name).c_str())));
}

/// Starts up, reads a setting and a text of the language library.
void use(HMODULE library)
{
    const auto start = functionOf<int(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*)>(
        library, "InitVelaConfig");
    const auto localName = functionOf<const wchar_t*()>(library, "GetCurrentLanguageLocalName");
    const auto profile =
        functionOf<unsigned long(wchar_t*, unsigned long&)>(library, "GetCurrentProfileName");
    ASSERT_TRUE(start && localName && profile);
    wchar_t text[16] = {};
    unsigned long size = 16;
    EXPECT_EQ(profile(text, size), 0u);
    EXPECT_EQ(start(L"Acme", L"Widget", L"fr-FR", nullptr), 0);
    EXPECT_EQ(utf8(localName()), "Français");
    EXPECT_EQ(profile(text, size = 16), 4u);
    EXPECT_EQ(utf8(text), "Work");
}

std::vector<std::string> calls;
auto& patches = *new std::vector<Patch>; // for ever: what they would restore is gone

template <Name name, typename Signature>
void record()
{
    patches.push_back(intercept<name, Signature>([](auto real, auto... arguments) {
        calls.emplace_back(name.text);
        return real(arguments...);
    }));
}

TEST(Loading, LoadsUsesUnloadsAndLoadsAgain)
{
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        const HMODULE library = LoadLibraryW(Wide(libraryModule));
        EXPECT_TRUE(round > 0 || !std::filesystem::exists(scratchFolder() / "home/.local/share/winhost"))
            << "the registry was used";
        setRaw(HKEY_CURRENT_USER, "Software\\Acme\\Widget\\2018\\fr-FR\\Profiles", "", text("Work"));
        use(library);
        calls.clear();
        record<"FreeLibrary", decltype(FreeLibrary)>();
        record<"RkLocker::~RkLocker", void(void*)>();
        EXPECT_TRUE(FreeLibrary(library));
        EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), nullptr);
        // The language library, then the product object with its lock.
        EXPECT_EQ(calls, (std::vector<std::string>{"FreeLibrary", "RkLocker::~RkLocker"}));
    }
}

} // namespace
