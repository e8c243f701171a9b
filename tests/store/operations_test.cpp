// Tests arguments, access rights and the removal of trees. oracle.cpp tests what the operations do.
#include "store.h"

namespace {

using Operations = StoreTest;

TEST_F(Operations, OpenOneKeyWithTheRightsThatTheyNeed)
{
    std::vector<REGSAM> rights;
    const Patch opening = intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(
        [&](auto real, HKEY parent, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
            rights.push_back(access);
            return real(parent, path, options, access, key);
        });
    VelaVariant value;
    for (const Operation& operation : operations) {
        setRaw(HKEY_CURRENT_USER, settings + "\\Item\\n", "n", text("some"));
        operation.call(m_config, eSettings, Wide("Item" + operation.last), value);
    }
    const REGSAM read = KEY_READ, write = KEY_WRITE, all = KEY_ALL_ACCESS;
    EXPECT_EQ(rights, (std::vector{read, read, write, write, write, all, all, all, all}));
}

TEST_F(Operations, AcceptOnlyKnownSubtreesAndPathsUpToTheirLimit)
{
    const std::string root = "Software\\Acme\\Widget";
    for (const Operation& operation : operations) {
        const auto accepts = [&](TarvoConfig::Path from, const std::string& path) {
            VelaVariant value;
            return operation.call(m_config, from, Wide(path), value) != TarvoConfig::eInvalidInput;
        };
        const bool cuts = operation.name != "isItemExist"; // isItemExist does not trim separators
        for (const std::string separator : {"", "/"}) {
            const std::size_t limit = operation.limit - (cuts ? 0 : separator.size());
            for (const std::size_t length : {limit, limit + 1}) {
                SCOPED_TRACE(operation.name + " of " + std::to_string(length));
                std::string subPath(length - root.size(), 'k');
                for (std::size_t at = 200; at < 1000; at += 200) {
                    subPath[at] = '\\';
                }
                makeKey(HKEY_CURRENT_USER, root + '\\' + subPath);
                EXPECT_EQ(accepts(TarvoConfig::eProductRoot, separator + subPath + operation.last),
                          length == limit);
            }
        }
        for (const std::size_t length : {1023u, 1024u}) { // lengths of the argument, including separators
            const bool fits = length == 1023;
            EXPECT_EQ(accepts(eSettings, std::string(length, 'x')), fits && !operation.last.empty());
            EXPECT_EQ(accepts(eSettings, std::string(length, '/')), fits && cuts);
        }
        EXPECT_FALSE(accepts(TarvoConfig::eCurrentProfile, "Item")); // no profile is recorded
        EXPECT_FALSE(accepts(static_cast<TarvoConfig::Path>(9), "Item"));
    }
    const Wide tooLong(std::string(257, 'k') + "\\n"); // no key name is that long
    EXPECT_EQ(m_config.setValue(eSettings, tooLong, {}), TarvoConfig::eNotFound);
}

TEST_F(Operations, RemoveKeyByKeyBeforeWindows8)
{
    const Patch version = pretendVersion(7);
    const std::string longest = "T\\" + std::string(250, 'x') + "\\" + std::string(250, 'y') + "\\";
    makeKey(HKEY_CURRENT_USER, settings + "\\Top");
    for (const std::size_t length : {519u, 520u}) { // the longest path that can be removed, and a longer one
        makeKey(HKEY_CURRENT_USER, settings + "\\T\\first");
        makeKey(HKEY_CURRENT_USER, settings + '\\' + longest + std::string(length - longest.size(), 'z'));
        EXPECT_EQ(m_config.removeItem(eSettings, L"T"), length == 519 ? eOk : TarvoConfig::eRegistryError);
        // The keys that were removed before a failure are not restored.
        EXPECT_EQ(tree(HKEY_CURRENT_USER, settings + "\\T\\first"), "");
        EXPECT_EQ(tree(HKEY_CURRENT_USER, settings + '\\' + longest).empty(), length != 520);
    }
    EXPECT_EQ(m_config.removeItem(eSettings, L"None"), eOk);
    const Patch newer = pretendVersion(8); // Windows 8 removes a tree in one call, without this limit
    EXPECT_EQ(m_config.removeItem(eSettings, L"T"), eOk);
    EXPECT_EQ(m_config.removeItem(eSettings, L"\\/"), TarvoConfig::eNotFound);
    EXPECT_NE(tree(HKEY_CURRENT_USER, settings + "\\Top"), "");
}

} // namespace
