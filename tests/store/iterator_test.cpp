// The names of items and values. oracle.cpp tests everything else about iterators.
#include "store.h"

namespace {

/// Reads the current name into a buffer that holds "kept", or into none if the capacity is 0, and prints the
/// error, the buffer and the length.
std::string nameOf(const auto& it, long capacity = 1024)
{
    wchar_t buffer[1024] = L"kept";
    wchar_t* const out = capacity == 0 ? nullptr : buffer;
    Error error = eOk;
    if constexpr (requires { it.name(out, capacity); }) {
        error = it.name(out, capacity);
    } else {
        error = it.key(out, capacity);
    }
    return std::to_string(error) + ' ' + utf8(buffer) + ' ' + std::to_string(capacity);
}

TEST_F(StoreTest, NamesNeedRoomForTheirTerminator)
{
    TarvoConfig::ItemIterator items;
    TarvoConfig::ValueIterator values;
    const auto add = [](const std::string& entry) {
        setRaw(HKEY_CURRENT_USER, settings, entry, dword(1));
        makeKey(HKEY_CURRENT_USER, settings + '\\' + entry);
    };
    const auto names = [&](long capacity) {
        return nameOf(items, capacity) + ", " + nameOf(values, capacity);
    };
    add("a");
    ASSERT_EQ(m_config.findItem(eSettings, L"", items) + m_config.findItem(eSettings, L"", values), 0);
    for (const long tooSmall : {-1L, 0L, 1L}) {
        EXPECT_EQ(names(tooSmall), "6 kept 2, 6 kept 2");
    }
    EXPECT_EQ(names(2), "0 a 2, 0 a 2");
    EXPECT_EQ(items.step() + values.step(), 0);
    EXPECT_EQ(names(1024), "4 kept 1024, 4 kept 1024");
    add("b"); // which an index reaches, though the count is that of findItem
    EXPECT_EQ(names(2), "0 b 2, 0 b 2");
    EXPECT_EQ(items.step() + values.step(), 2 * TarvoConfig::eInvalidIterator);
}

TEST_F(StoreTest, NamesOfValuesReach1023Characters)
{
    for (const auto& [size, error] : {std::pair(1023U, eOk), {1024U, TarvoConfig::eBufferTooSmall}}) {
        const std::string name(size, 'v');
        remakeKey(HKEY_CURRENT_USER, settings, name, dword(1));
        TarvoConfig::ValueIterator it;
        ASSERT_EQ(m_config.findItem(eSettings, nullptr, it), eOk);
        VelaVariant v;
        EXPECT_EQ(nameOf(it), error == eOk ? "0 " + name + " 1024" : "6 kept 8192");
        EXPECT_EQ(nameOf(it, 1023), error == eOk ? "6 kept 1024" : "6 kept 8192");
        EXPECT_EQ(it.value(v), error);
        EXPECT_EQ(it.setValue(v), error);
    }
}

} // namespace
