// Tests a program that loads and unloads the library instead of being linked with it.
#include "support/test.h"

#include <shlobj.h>

namespace {

// Function names as each compiler decorates them.
#ifdef _MSC_VER
constexpr char startUp[] = "?InitVelaConfig@@YA?AW4Error@TarvoConfig@@PEB_W000@Z";
constexpr char shortName[] = "?GetCurrentLanguageShortName@@YAPEB_WXZ";
constexpr char localName[] = "?GetCurrentLanguageLocalName@@YAPEB_WXZ";
#else
constexpr char startUp[] = "_Z14InitVelaConfigPKwS0_S0_S0_";
constexpr char shortName[] = "_Z27GetCurrentLanguageShortNamev";
constexpr char localName[] = "_Z27GetCurrentLanguageLocalNamev";
#endif

template <typename Function>
Function* functionOf(HMODULE module, const char* name)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

TEST(Library, CanBeLoadedAgainAfterUnload)
{
    using Text = const wchar_t*;
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        const HMODULE library = LoadLibraryW(Wide(libraryModule));
        EXPECT_TRUE(round > 0 || !std::filesystem::exists(scratchFolder() / "home/.local/share/winhost"))
            << "loading opened the registry";
        EXPECT_EQ(utf8(functionOf<Text()>(library, shortName)()), "unknown");
        const auto start = functionOf<int(Text, Text, Text, Text)>(library, startUp);
        EXPECT_EQ(start(L"Acme", L"Widget", L"fr-FR", nullptr), 0);
        EXPECT_EQ(utf8(functionOf<Text()>(library, localName)()), "Français");
        EXPECT_TRUE(FreeLibrary(library));
        EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), nullptr);
        EXPECT_EQ(GetModuleHandleW(L"RkUInfoRes.dll"), nullptr);
    }
}

TEST(Library, LeavesTheUserDataCacheFolderWhenLoaded)
{
    wchar_t documents[MAX_PATH] = {};
    SHGetFolderPathW(nullptr, CSIDL_PERSONAL | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, documents);
    for (const auto& [name, isLeft] :
         {std::pair("UserDataCache", true), {"userDATAcache", true}, {"UserDataCaches", false}}) {
        const std::filesystem::path folder = thisProgram().parent_path() / name;
        std::filesystem::create_directories(folder);
        std::filesystem::current_path(folder);
        const HMODULE library = LoadLibraryW(Wide(libraryModule));
        EXPECT_EQ(windowsPath(std::filesystem::current_path()),
                  isLeft ? utf8(documents) : windowsPath(folder));
        EXPECT_TRUE(FreeLibrary(library));
        std::filesystem::current_path(scratchFolder());
        std::filesystem::remove_all(folder);
    }
}

} // namespace
