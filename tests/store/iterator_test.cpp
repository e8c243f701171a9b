// Walking the sub-keys and the values of a key.
#include "store.h"

#include <set>

namespace {

using namespace testing_support;

Error nameOf(const auto& it, wchar_t* buffer, long& length)
{
    if constexpr (requires { it.name(buffer, length); }) {
        return it.name(buffer, length);
    } else {
        return it.key(buffer, length);
    }
}

/// The current name, or the error in its place.
std::string nameOf(const auto& it)
{
    wchar_t buffer[1024];
    long length = 1024;
    const Error error = nameOf(it, buffer, length);
    return error == eOk ? utf8(buffer) : "error " + std::to_string(error);
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

TYPED_TEST(Iterators, WalkEveryEntryOnce)
{
    const TypeParam it = this->walk("Key", {"b", "c", "a"});
    std::set<std::string> walked;
    for (int index = 0; index < 3; ++index) {
        walked.insert(nameOf(it));
        EXPECT_EQ(it.step(), eOk);
    }
    EXPECT_EQ(walked, (std::set<std::string>{"a", "b", "c"}));
    EXPECT_EQ(nameOf(it), "error 4");
    EXPECT_EQ(it.step(), TarvoConfig::eInvalidIterator);
    this->walk("Key", {"d"}); // which an index reaches, though the count is that of findItem
    EXPECT_EQ(nameOf(it), "d");
    EXPECT_EQ(it.step(), TarvoConfig::eInvalidIterator);
}

TYPED_TEST(Iterators, NameNeedsRoomForItsTerminator)
{
    const std::string longest(255, 'k'); // of a key
    const TypeParam it = this->walk("Key", {longest});
    for (const long capacity : {-1L, 255L, 256L, 1024L}) {
        SCOPED_TRACE(capacity);
        wchar_t buffer[1024] = L"kept";
        long length = capacity;
        EXPECT_EQ(nameOf(it, buffer, length), capacity > 255 ? eOk : TarvoConfig::eBufferTooSmall);
        EXPECT_EQ(length, 256);
        EXPECT_EQ(utf8(buffer), capacity > 255 ? longest : "kept");
        EXPECT_EQ(nameOf(it, nullptr, length = capacity), TarvoConfig::eBufferTooSmall);
        EXPECT_EQ(length, 256);
    }
}

TYPED_TEST(Iterators, WithoutAnEntry)
{
    TypeParam unpositioned;
    TypeParam empty = this->walk("Empty", {});
    TypeParam cleared = this->walk("Key", {"name"});
    TypeParam kept; // takes the key that findItem lets go without closing it
    std::memcpy(static_cast<void*>(&kept), static_cast<const void*>(&cleared), sizeof kept);
    EXPECT_EQ(this->m_config.findItem(eSettings, L"Missing", cleared), TarvoConfig::eNotFound);
    for (TypeParam* const it : {&unpositioned, &empty, &cleared}) {
        long length = 77;
        EXPECT_EQ(nameOf(*it, nullptr, length), TarvoConfig::eInvalidIterator);
        EXPECT_EQ(length, 77);
        EXPECT_EQ(it->step(), TarvoConfig::eInvalidIterator);
    }
    EXPECT_EQ(nameOf(kept), "name");
}

TYPED_TEST(Iterators, ACopyOpensTheKeyForItself)
{
    TypeParam last;
    {
        const TypeParam first = this->walk("Key", {"a", "b"});
        const TypeParam copy(first);
        EXPECT_EQ(first.step(), eOk);
        last = copy;
        last = first; // closes its own key
        EXPECT_EQ(this->m_keys.stillOpen(), 3);
        EXPECT_EQ(nameOf(copy) + nameOf(last), "ab"); // each walks on its own
    }
    EXPECT_EQ(this->m_keys.stillOpen(), 1);
    removeKey(HKEY_CURRENT_USER, settings + "\\Key");
    const TypeParam& same = last;
    last = same;
    const TypeParam ofAGoneKey(last);
    EXPECT_EQ(last.step(), eOk); // it still holds the key
    EXPECT_EQ(nameOf(ofAGoneKey), "error 4");
    EXPECT_EQ(ofAGoneKey.step(), TarvoConfig::eInvalidIterator);
    last = TypeParam();
    EXPECT_EQ(this->m_keys.stillOpen(), 0);
}

TEST_F(StoreTest, NamesOfValuesReach1023Characters)
{
    for (const std::size_t size : {1023u, 1024u}) {
        SCOPED_TRACE(size);
        setRaw(HKEY_CURRENT_USER, settings + '\\' + std::to_string(size), std::string(size, 'v'), dword(1));
        TarvoConfig::ValueIterator it;
        ASSERT_EQ(m_config.findItem(eSettings, Wide(std::to_string(size)), it), eOk);
        wchar_t buffer[9000];
        long length = 9000;
        const Error error = size == 1023 ? eOk : TarvoConfig::eBufferTooSmall;
        EXPECT_EQ(it.key(buffer, length), error);
        EXPECT_EQ(length, error == eOk ? 1024 : 8192);
        EXPECT_EQ(it.key(buffer, length = 1023), TarvoConfig::eBufferTooSmall);
        VelaVariant v;
        EXPECT_EQ(it.value(v), error);
        EXPECT_EQ(it.setValue(v), error);
    }
}

} // namespace
