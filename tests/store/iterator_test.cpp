// Walking the sub-keys and the values of a key.
#include "store.h"

#include <set>

namespace {

using namespace testing_support;

Error nameOf(const TarvoConfig::ItemIterator& it, wchar_t* buffer, long& length)
{
    return it.name(buffer, length);
}

Error nameOf(const TarvoConfig::ValueIterator& it, wchar_t* buffer, long& length)
{
    return it.key(buffer, length);
}

/// The current name, or the error in its place.
std::string nameOf(const auto& it)
{
    wchar_t buffer[1024];
    long length = 1024;
    const Error error = nameOf(it, buffer, length);
    return error == eOk ? utf8(buffer) : "error " + std::to_string(error);
}

/// What both iterators do alike, below keys with entries of either kind.
template <typename Iterator>
class Iterators : public StoreTest
{
protected:
    static void add(const std::string& key, std::initializer_list<const char*> entries)
    {
        const std::string path = settings + "\\" + key;
        for (const char* const entry : entries) {
            setRaw(HKEY_CURRENT_USER, path, entry, dword(1));
            makeKey(HKEY_CURRENT_USER, path + "\\" + entry);
        }
    }

    Error find(LPCWSTR key, Iterator& it) { return m_config.findItem(eSettings, key, it); }
};

using Kinds = testing::Types<TarvoConfig::ItemIterator, TarvoConfig::ValueIterator>;
TYPED_TEST_SUITE(Iterators, Kinds, );

TYPED_TEST(Iterators, WalkEveryEntryOnce)
{
    this->add("Three", {"b", "c", "a"});
    TypeParam it;
    ASSERT_EQ(this->find(L"/Three//", it), eOk);
    std::set<std::string> walked;
    for (int index = 0; index < 3; ++index) {
        walked.insert(nameOf(it));
        EXPECT_EQ(it.step(), eOk);
    }
    EXPECT_EQ(walked, (std::set<std::string>{"a", "b", "c"}));
    EXPECT_EQ(nameOf(it), "error 4");
    EXPECT_EQ(it.step(), TarvoConfig::eInvalidIterator);
    this->add("Three", {"d"}); // which an index reaches, though the count is that of findItem
    EXPECT_EQ(nameOf(it), "d");
    EXPECT_EQ(it.step(), TarvoConfig::eInvalidIterator);
}

TYPED_TEST(Iterators, NameNeedsRoomForItsTerminator)
{
    this->add("One", {"name"});
    TypeParam it;
    ASSERT_EQ(this->find(L"One", it), eOk);
    for (const long capacity : {-1L, 4L, 5L, 100L}) {
        SCOPED_TRACE(capacity);
        wchar_t buffer[6] = L"?????";
        long length = capacity;
        EXPECT_EQ(nameOf(it, buffer, length), capacity >= 5 ? eOk : TarvoConfig::eBufferTooSmall);
        EXPECT_EQ(length, 5);
        EXPECT_EQ(utf8(buffer), capacity >= 5 ? "name" : "?????");
        EXPECT_EQ(nameOf(it, nullptr, length = capacity), TarvoConfig::eBufferTooSmall);
        EXPECT_EQ(length, 5);
    }
}

TYPED_TEST(Iterators, WithoutAnEntry)
{
    makeKey(HKEY_CURRENT_USER, settings + "\\None");
    this->add("One", {"name"});
    TypeParam unpositioned;
    TypeParam empty;
    ASSERT_EQ(this->find(L"None", empty), eOk);
    TypeParam cleared;
    ASSERT_EQ(this->find(L"One", cleared), eOk);
    TypeParam kept; // takes the key that findItem lets go without closing it
    std::memcpy(static_cast<void*>(&kept), static_cast<const void*>(&cleared), sizeof kept);
    EXPECT_EQ(this->find(L"Missing", cleared), TarvoConfig::eNotFound);
    for (TypeParam* const it : {&unpositioned, &empty, &cleared}) {
        long length = 77;
        EXPECT_EQ(nameOf(*it, nullptr, length), TarvoConfig::eInvalidIterator);
        EXPECT_EQ(length, 77);
        EXPECT_EQ(it->step(), TarvoConfig::eInvalidIterator);
        if constexpr (std::is_same_v<TypeParam, TarvoConfig::ValueIterator>) {
            VelaVariant v;
            EXPECT_EQ(it->value(v), TarvoConfig::eInvalidIterator);
            EXPECT_EQ(it->setValue(v), TarvoConfig::eInvalidIterator);
        }
    }
    EXPECT_EQ(nameOf(kept), "name");
}

TYPED_TEST(Iterators, ACopyOpensTheKeyForItself)
{
    this->add("Two", {"a", "b"});
    TypeParam last;
    {
        TypeParam first;
        ASSERT_EQ(this->find(L"Two", first), eOk);
        const TypeParam copy(first);
        EXPECT_EQ(first.step(), eOk);
        ASSERT_EQ(this->find(L"", last), eOk);
        last = first; // closes its own key
        EXPECT_EQ(this->m_keys.stillOpen(), 3);
        EXPECT_EQ(nameOf(copy), "a"); // each walks on its own
    }
    EXPECT_EQ(this->m_keys.stillOpen(), 1);
    removeKey(HKEY_CURRENT_USER, settings + "\\Two");
    const TypeParam& same = last;
    last = same;
    TypeParam ofAGoneKey(last);
    EXPECT_EQ(last.step(), eOk); // it still holds the key
    EXPECT_EQ(nameOf(ofAGoneKey), "error 4");
    EXPECT_EQ(ofAGoneKey.step(), TarvoConfig::eInvalidIterator);
    last = TypeParam();
    EXPECT_EQ(this->m_keys.stillOpen(), 0);
}

using LongNames = StoreTest;

TEST_F(LongNames, Reach255And1023Characters)
{
    const std::string longestKey(255, 'k');
    makeKey(HKEY_CURRENT_USER, settings + "\\" + longestKey);
    TarvoConfig::ItemIterator item;
    ASSERT_EQ(m_config.findItem(eSettings, nullptr, item), eOk);
    EXPECT_EQ(item.getSubKeyCount(), 1);
    EXPECT_EQ(nameOf(item), longestKey);
    for (const std::size_t size : {1023u, 1024u}) {
        SCOPED_TRACE(size);
        const bool fits = size == 1023;
        setRaw(HKEY_CURRENT_USER, settings + "\\" + std::to_string(size), std::string(size, 'v'), dword(1));
        TarvoConfig::ValueIterator it;
        ASSERT_EQ(m_config.findItem(eSettings, Wide(std::to_string(size)), it), eOk);
        wchar_t buffer[9000];
        long length = 9000;
        EXPECT_EQ(it.key(buffer, length), fits ? eOk : TarvoConfig::eBufferTooSmall);
        EXPECT_EQ(length, fits ? 1024 : 8192);
        EXPECT_EQ(it.key(buffer, length = 1023), TarvoConfig::eBufferTooSmall);
        VelaVariant v;
        EXPECT_EQ(it.value(v), fits ? eOk : TarvoConfig::eBufferTooSmall);
        EXPECT_EQ(it.setValue(v), fits ? eOk : TarvoConfig::eBufferTooSmall);
    }
}

} // namespace
