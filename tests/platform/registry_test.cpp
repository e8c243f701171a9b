// The registry calls: what the random calls of tests/agreement do not reach.
#include "support/test.h"

namespace {

TEST(Registry, LimitsNamesNotDepthOrSize)
{
    const OwnedKey key = makeKey(HKEY_CURRENT_USER, "Software\\Acme");
    const std::string longest(16383, 'n');
    const RawValue large = {REG_BINARY, std::string(std::size_t{3} << 20, 'x')};
    std::string deep;
    for (int level = 0; level < 300; ++level) {
        deep += "level\\";
    }
    setRaw(key.get(), deep, longest, large);
    EXPECT_TRUE(getRaw(key.get(), deep, longest) == large);
    EXPECT_EQ(RegSetValueExW(key.get(), Wide(longest + 'n'), 0, REG_NONE, nullptr, 0),
              ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegDeleteTreeW(key.get(), L"level"), ERROR_SUCCESS);
    EXPECT_EQ(tree(HKEY_CURRENT_USER, "Software\\Acme"), "[Software\\Acme]\n");
}

} // namespace
