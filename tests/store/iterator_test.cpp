// Walking the sub-keys and the values of a key.
#include "store.h"

namespace {

/// What an iterator answers when it is asked for its name, into a buffer of some capacity that holds "kept",
/// 0 for none: the error, the buffer and the length.
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

/// What both iterators do alike, in keys that have each entry as a sub-key and as a value.
template <typename Iterator>
class Iterators : public StoreTest
{
protected:
    Iterator walk(const std::string& key, const std::vector<std::string>& entries)
    {
        const std::string path = settings + '\\' + key;
        makeKey(HKEY_CURRENT_USER, path);
        for (const std::string& entry : entries) {
            setRaw(HKEY_CURRENT_USER, path, entry, dword(1));
            makeKey(HKEY_CURRENT_USER, path + '\\' + entry);
        }
        Iterator it;
        EXPECT_EQ(m_config.findItem(eSettings, Wide(key), it), eOk);
        return it;
    }
};

using Kinds = testing::Types<TarvoConfig::ItemIterator, TarvoConfig::ValueIterator>;
TYPED_TEST_SUITE(Iterators, Kinds, );

TYPED_TEST(Iterators, GiveNamesThatFit)
{
    const TypeParam it = this->walk("Key", {"b", "a"});
    for (const char* const name : {"0 a 2", "0 b 2"}) {
        for (const long tooSmall : {-1L, 0L, 1L}) {
            EXPECT_EQ(nameOf(it, tooSmall), "6 kept 2");
        }
        EXPECT_EQ(nameOf(it, 2), name);
        EXPECT_EQ(it.step(), eOk);
    }
    EXPECT_EQ(nameOf(it), "4 kept 1024");
    this->walk("Key", {"d"}); // which an index reaches, though the count is that of findItem
    EXPECT_EQ(nameOf(it), "0 d 2");
    EXPECT_EQ(it.step(), TarvoConfig::eInvalidIterator);
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
