// Removing trees, by the system's own call and key by key.
#include "store.h"

namespace {

using namespace testing_support;

class Removal : public StoreTest
{
protected:
    static void make(const std::string& path) { makeKey(HKEY_CURRENT_USER, settings + "\\" + path); }
    static bool exists(const std::string& path)
    {
        return keyExists(HKEY_CURRENT_USER, settings + "\\" + path);
    }
    Error remove(Text item) { return m_config.removeItem(eSettings, item); }
};

TEST_F(Removal, OfAMissingItemAndOfTrees)
{
    std::string deep = "Tree";
    for (int level = 0; level < 200; ++level) {
        deep += "\\k";
    }
    for (const int version : {-1, 7, 8}) {
        SCOPED_TRACE(version);
        const Patch pretended = pretendVersion(version);
        make(deep);
        for (int index = 0; index < 1000; ++index) {
            make("Tree\\Wide\\" + std::to_string(index));
        }
        make("Treetop");
        EXPECT_EQ(remove(L"Tree"), eOk);
        EXPECT_FALSE(exists("Tree"));
        EXPECT_TRUE(exists("Treetop"));
        EXPECT_EQ(remove(L"Tree"), version < 8 ? eOk : TarvoConfig::eRegistryError);
        EXPECT_EQ(remove(L"Tree\\Item"), TarvoConfig::eNotFound);
    }
}

TEST_F(Removal, LooksForTheCallUntilItIsFound)
{
    make("a");
    const Patch version = pretendVersion(8);
    int looked = 0;
    bool found = false;
    const Patch look = intercept<"GetProcAddress", decltype(GetProcAddress)>(
        [&](auto real, HMODULE module, const char* name) {
            EXPECT_STREQ(name, "RegDeleteTreeW");
            ++looked;
            return found ? real(module, name) : nullptr;
        });
    EXPECT_EQ(remove(L"None"), eOk); // key by key
    found = true;
    EXPECT_EQ(remove(L"None"), TarvoConfig::eRegistryError);
    EXPECT_EQ(remove(L"None"), TarvoConfig::eRegistryError);
    EXPECT_EQ(looked, 2);
}

TEST_F(Removal, KeyByKeyReaches519Characters)
{
    const Patch version = pretendVersion(7);
    const std::string longest = "T\\" + std::string(250, 'x') + "\\" + std::string(250, 'y') + "\\";
    for (const std::size_t length : {519u, 520u}) {
        make("T\\first");
        make(longest + std::string(length - longest.size(), 'z'));
        EXPECT_EQ(remove(L"T"), length == 519 ? eOk : TarvoConfig::eRegistryError);
        EXPECT_FALSE(exists("T\\first")); // what was removed stays removed
        EXPECT_EQ(exists(longest), length == 520);
    }
}

} // namespace
