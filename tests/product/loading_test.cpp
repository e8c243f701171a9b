// Loading and unloading by a program that is not linked with the library.
#include "support/test.h"

#include <shlobj.h>

namespace {

// As each compiler decorates them.
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

std::vector<std::string> calls;
auto& patches = *new std::vector<Patch>; // never destroyed: they would write to an unloaded module

template <Name name, typename Signature>
void record()
{
    patches.push_back(intercept<name, Signature>([](auto real, auto... arguments) {
        calls.emplace_back(name.text);
        return real(arguments...);
    }));
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
        calls.clear();
        record<"FreeLibrary", decltype(FreeLibrary)>();
        record<"RkLocker::~RkLocker", void(void*)>();
        EXPECT_TRUE(FreeLibrary(library));
        EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), nullptr);
        // The language library is released, then the product object is destroyed with its lock.
        EXPECT_EQ(calls, (std::vector<std::string>{"FreeLibrary", "RkLocker::~RkLocker"}));
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
