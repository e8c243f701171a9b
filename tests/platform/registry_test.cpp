// The registry calls: what the random calls of tests/agreement do not reach.
#include "support/test.h"

namespace {

using namespace testing_support;

class RegistryTest : public testing::Test
{
protected:
    LSTATUS set(const std::string& name, const std::string& bytes) const
    {
        return RegSetValueExW(m_key, Wide(name), 0, REG_BINARY, reinterpret_cast<const BYTE*>(bytes.data()),
                              static_cast<DWORD>(bytes.size()));
    }

    const OwnedKey m_owned = makeKey(HKEY_CURRENT_USER, "Software\\Acme");
    const HKEY m_key = m_owned.get();
};

TEST_F(RegistryTest, LimitsNamesNotDepthOrSize)
{
    const std::string longest(16383, 'n');
    EXPECT_EQ(set(longest, ""), ERROR_SUCCESS);
    EXPECT_EQ(set(longest + 'n', ""), ERROR_INVALID_PARAMETER);
    EXPECT_TRUE(getRaw(m_key, "", longest) && !getRaw(m_key, "", longest + 'n'));
    std::string deep;
    for (int level = 0; level < 300; ++level) {
        deep += "level\\";
    }
    makeKey(m_key, deep);
    EXPECT_NE(tree(m_key, deep), "");
    EXPECT_EQ(RegDeleteTreeW(m_key, L"level"), ERROR_SUCCESS);
    const std::string large(std::size_t{3} << 20, 'x');
    EXPECT_EQ(set("large", large), ERROR_SUCCESS);
    EXPECT_TRUE(getRaw(m_key, "", "large") == RawValue(REG_BINARY, large));
}

TEST_F(RegistryTest, RefusesMissingArgumentsAndToDeleteRoots)
{
    DWORD length = 4;
    EXPECT_EQ(set("v", ""), ERROR_SUCCESS);
    EXPECT_EQ(enumerate(true, m_key, 0, nullptr, &length), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegDeleteKeyW(m_key, nullptr), ERROR_INVALID_PARAMETER);
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        EXPECT_EQ(RegCloseKey(root), ERROR_SUCCESS);
        EXPECT_NE(tree(root, "Software"), "");
        EXPECT_EQ(RegDeleteKeyW(root, L""), ERROR_ACCESS_DENIED);
    }
}

} // namespace
