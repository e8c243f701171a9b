// A library that is planted in the working directory, as docs/LOADING.md describes.
#include "support/test.h"

namespace {

TEST(PlantedLibrary, IsTakenUnlessTheSearchIsRestricted)
{
    ASSERT_EQ(startAcme(), TarvoConfig::eOk);
    const auto isTaken = [](HMODULE module) { return module != nullptr && FreeLibrary(module) != FALSE; };
    writeFile(scratchFolder() / "Planted.dll",
              readFile(thisProgram().parent_path() / "en-US/RkUInfoRes.dll"));
    std::filesystem::current_path(scratchFolder());
    for (const bool isRestricted : {false, true}) {
        if (isRestricted) {
            SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
        }
        EXPECT_EQ(isTaken(LoadResourceDll(L"Planted.dll")), !isRestricted);
        EXPECT_EQ(isTaken(LoadResourceDllEx(L"Planted.dll", nullptr, 0)), !isRestricted);
    }
    std::filesystem::current_path(thisProgram().parent_path()); // so that the folder can be removed
}

} // namespace
