// The library loaded and unloaded by a program that is not linked to it.
#include "support/test.h"

#include <shlobj.h>

namespace {

template <typename Function>
Function* functionOf(HMODULE module, const char* name)
{
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(module, exportedName(name).c_str())));
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
    using Text = const wchar_t*;
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        const HMODULE library = LoadLibraryW(Wide(libraryModule));
        EXPECT_TRUE(round > 0 || !std::filesystem::exists(scratchFolder() / "home/.local/share/winhost"))
            << "the registry was used";
        EXPECT_EQ(utf8(functionOf<Text()>(library, "GetCurrentLanguageShortName")()), "unknown");
        EXPECT_EQ(functionOf<int(Text, Text, Text, Text)>(library, "InitVelaConfig")(L"Acme", L"Widget",
                                                                                     L"fr-FR", nullptr),
                  0);
        EXPECT_EQ(utf8(functionOf<Text()>(library, "GetCurrentLanguageLocalName")()), "Français");
        calls.clear();
        record<"FreeLibrary", decltype(FreeLibrary)>();
        record<"RkLocker::~RkLocker", void(void*)>();
        EXPECT_TRUE(FreeLibrary(library));
        EXPECT_EQ(GetModuleHandleW(Wide(libraryModule)), nullptr);
        // The language library, then the product object with its lock.
        EXPECT_EQ(calls, (std::vector<std::string>{"FreeLibrary", "RkLocker::~RkLocker"}));
    }
}

TEST(Loading, LeavesTheUserDataCacheFolder)
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
