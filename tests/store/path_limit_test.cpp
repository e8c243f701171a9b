// The longest arguments and key paths of the operations.
#include "store.h"

namespace {

using namespace testing_support;

bool accepts(const Operation& operation, TarvoConfig& config, TarvoConfig::Path root, const std::string& path)
{
    VelaVariant value;
    return operation.call(config, root, Wide(path), value) != TarvoConfig::eInvalidInput;
}

/// A key path of a length, of components that the registry takes.
std::string keyPath(std::size_t length)
{
    std::string path(length, 'k');
    for (std::size_t at = 200; at + 1 < length; at += 200) {
        path[at] = '\\';
    }
    return path;
}

using PathLimit = StoreTest;

TEST_F(PathLimit, OfRootAndSubPath)
{
    Config wordy; // with the longest names that start-up takes
    ASSERT_EQ(wordy.initial(Wide(254, L'c'), Wide(254, L'p'), L"en-US", nullptr), eOk);
    wchar_t root[1024];
    wordy.getRegRootPath(TarvoConfig::eProfilesRoot, root);
    setRaw(HKEY_CURRENT_USER, utf8(root), "",
           {REG_BINARY, Wide(std::string(127, 'n')).bytes().substr(0, 254)});
    const std::pair<TarvoConfig*, TarvoConfig::Path> roots[] = {{&m_config, TarvoConfig::eProductRoot},
                                                                {&wordy, TarvoConfig::eCurrentProfile}};
    for (const auto& [config, path] : roots) {
        config->getRegRootPath(path, root);
        const std::string rootPath = utf8(root);
        ASSERT_EQ(rootPath.size(), path == TarvoConfig::eProductRoot ? 20u : 666u);
        for (const Operation& operation : operations) {
            const bool countsSeparators = operation.name == "isItemExist";
            for (const std::string separator : {"", "/"}) {
                const std::size_t limit = operation.limit - (countsSeparators ? separator.size() : 0);
                for (const std::size_t length : {limit, limit + 1}) {
                    SCOPED_TRACE(operation.name + " of " + std::to_string(length) + " below " + rootPath);
                    const std::string subPath = keyPath(length - rootPath.size());
                    makeKey(HKEY_CURRENT_USER,
                            std::string(rootPath).append("\\").append(subPath)); // for isItemExist to find
                    EXPECT_EQ(accepts(operation, *config, path, separator + subPath + operation.last),
                              length == limit);
                }
            }
        }
    }
}

TEST_F(PathLimit, OfAnArgumentBeforeItIsNormalised)
{
    for (const Operation& operation : operations) {
        for (const std::size_t length : {1023u, 1024u, 1025u, 5000u}) {
            SCOPED_TRACE(operation.name + " of " + std::to_string(length));
            // Without separators it may be a value or an item; separators come to nothing, or are not cut.
            const bool named = length == 1023 && !operation.last.empty();
            const bool cut = length == 1023 && operation.name != "isItemExist";
            EXPECT_EQ(accepts(operation, m_config, eSettings, std::string(length, 'x')), named);
            EXPECT_EQ(accepts(operation, m_config, eSettings, std::string(length, '/')), cut);
        }
    }
}

} // namespace
