// Tests the limits on the length of names, and an item without access. oracle.cpp tests everything else about
// iterators.
#include "store.h"

namespace {

using ValueIterator = StoreTest;
using ItemIterator = StoreTest;

TEST_F(ValueIterator, ReturnsNamesOfUpTo1023Characters)
{
    for (const auto& [size, error] : {std::pair(1023U, eOk), {1024U, TarvoConfig::eBufferTooSmall}}) {
        const std::string name(size, 'v');
        remakeKey(HKEY_CURRENT_USER, settings, name, dword(1));
        TarvoConfig::ValueIterator it;
        ASSERT_EQ(m_config.findItem(eSettings, nullptr, it), eOk);
        for (const long capacity : {-1L, 0L, 1023L, 1024L}) { // 0: without a buffer
            wchar_t buffer[1024] = L"kept";
            long length = capacity;
            const bool fits = error == eOk && capacity == 1024;
            EXPECT_EQ(it.key(capacity == 0 ? nullptr : buffer, length),
                      fits ? eOk : TarvoConfig::eBufferTooSmall);
            EXPECT_EQ(utf8(buffer), fits ? name : "kept");
            EXPECT_EQ(length, error == eOk ? 1024 : 8192);
        }
        VelaVariant v;
        EXPECT_EQ(it.value(v), error);
        EXPECT_EQ(it.setValue(v), error);
    }
}

TEST_F(ItemIterator, ReturnsNotFoundForAnItemThatCannotBeOpened)
{
    remakeKey(HKEY_CURRENT_USER, settings + "\\Item", "v", dword(1));
    TarvoConfig::ItemIterator it;
    ASSERT_EQ(m_config.findItem(eSettings, nullptr, it), eOk);
    VelaVariant v;
    ASSERT_EQ(m_config.getValue(it, L"v", v), eOk);
    const Patch opening = intercept<"RegOpenKeyExW", decltype(RegOpenKeyExW)>(
        [](auto...) { return LSTATUS{ERROR_ACCESS_DENIED}; });
    EXPECT_EQ(m_config.getValue(it, L"v", v), TarvoConfig::eNotFound);
    EXPECT_EQ(m_config.setValue(it, L"v", v), TarvoConfig::eNotFound);
}

} // namespace
