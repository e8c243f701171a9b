// Removing trees, by the system's own call and key by key.
#include "store.h"

namespace {

using namespace testing_support;

/// Lets the library find no RegDeleteTreeW, and counts how often it looks.
[[nodiscard]] auto hideDeleteTree(int& looked)
{
    return intercept<decltype(GetProcAddress)>("GetProcAddress",
                                               [&looked](auto, HMODULE, const char* name) -> FARPROC {
                                                   EXPECT_STREQ(name, "RegDeleteTreeW");
                                                   ++looked;
                                                   return nullptr;
                                               });
}

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

class RemovalByVersion : public Removal, public testing::WithParamInterface<int>
{
};

INSTANTIATE_TEST_SUITE_P(Windows, RemovalByVersion, testing::Values(-1, 8));

TEST_P(RemovalByVersion, OfAMissingItemAndOfTrees)
{
    const auto version = pretendVersion(GetParam());
    std::string deep = "Tree";
    while (deep.size() < 402) {
        deep += "\\k"; // 200 levels
    }
    make(deep);
    for (int index = 0; index < 10000; ++index) {
        make("Tree\\Wide\\" + std::to_string(index));
    }
    make("Treetop");
    EXPECT_EQ(remove(L"Tree"), eOk);
    EXPECT_FALSE(exists("Tree"));
    EXPECT_TRUE(exists("Treetop"));
    EXPECT_EQ(remove(L"Tree"), GetParam() < 8 ? eOk : TarvoConfig::eRegistryError);
    EXPECT_EQ(remove(L"Tree\\Item"), TarvoConfig::eNotFound);
}

TEST_F(Removal, LooksForTheCallUntilItIsFound)
{
    make("a");
    const auto version = pretendVersion(8);
    int looked = 0;
    {
        const auto hidden = hideDeleteTree(looked);
        EXPECT_EQ(remove(L"None"), eOk);
        EXPECT_EQ(remove(L"None"), eOk);
        const auto noModule = intercept<decltype(GetModuleHandleW)>(
            "GetModuleHandleW", [](auto...) -> HMODULE { return nullptr; });
        EXPECT_EQ(remove(L"None"), eOk);
    }
    EXPECT_EQ(remove(L"None"), TarvoConfig::eRegistryError);
    const auto hidden = hideDeleteTree(looked);
    EXPECT_EQ(remove(L"None"), TarvoConfig::eRegistryError);
    EXPECT_EQ(looked, 2);
}

TEST_F(Removal, KeyByKeyReaches519Characters)
{
    const auto version = pretendVersion(7);
    const std::string longest = "T\\" + std::string(250, 'x') + "\\" + std::string(250, 'y') + "\\";
    for (const std::size_t length : {519u, 520u}) {
        make("T\\first");
        make(longest + std::string(length - longest.size(), 'z'));
        EXPECT_EQ(remove(L"T"), length == 519 ? eOk : TarvoConfig::eRegistryError);
        EXPECT_FALSE(exists("T\\first")); // what was removed stays removed
        EXPECT_EQ(exists(longest), length == 520);
    }
}

TEST_F(Removal, KeyByKeyStopsAtARefusal)
{
    const auto version = pretendVersion(7);
    make("T\\a\\deep");
    make("T\\b");
    make("T\\c");
    std::string removed;
    const auto refused =
        intercept<decltype(RegDeleteKeyW)>("RegDeleteKeyW", [&](auto real, HKEY key, Text path) {
            const LSTATUS status = utf8(path) == "T\\b" ? denied : real(key, path);
            removed += status == ERROR_SUCCESS ? utf8(path) + " " : "";
            return status;
        });
    EXPECT_EQ(remove(L"T"), TarvoConfig::eRegistryError);
    EXPECT_EQ(removed, "T\\a\\deep T\\a ");
}

} // namespace
