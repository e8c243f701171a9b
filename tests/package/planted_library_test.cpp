// A library that lies in the working directory, as docs/LOADING.md tells of it.
#include "support/test.h"

namespace {

using namespace testing_support;

/// Exits with 1 when the planted library was loaded; two calls would find it.
const ChildPart load("loadPlantedLibrary", [](const std::vector<std::string>& arguments) {
    if (arguments.at(0) == "restricted") {
        SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    }
    return (startAcme() != TarvoConfig::eOk ? 100 : 0) + (LoadResourceDll(Wide("Planted.dll")) ? 1 : 0) +
           (LoadResourceDllEx(Wide("Planted.dll"), nullptr, 0) ? 10 : 0);
});

TEST(PlantedLibrary, IsTakenUnlessTheSearchIsRestricted)
{
    const Application application;
    application.addLanguage("en-US");
    const std::filesystem::path documents = scratchFolder() / "documents";
    writeFile(documents / "Planted.dll", readFile(thisProgram().parent_path() / "en-US/RkUInfoRes.dll"));
    EXPECT_EQ(load.run(application.program(), {"open"}, {documents, {}}).exitCode, 11);
    EXPECT_EQ(load.run(application.program(), {"restricted"}, {documents, {}}).exitCode, 0);
}

} // namespace
