// Typed values to and from registry values, by every operation that reads or writes one.
#include "store.h"

namespace {

using namespace testing_support;

/// A variant of any type; without a block when it is not set.
VelaVariant variant(std::int32_t type, void (*set)(VelaVariant&) = nullptr)
{
    VelaVariant v;
    if (set != nullptr) {
        set(v);
    } else {
        std::memcpy(static_cast<void*>(&v), &type, sizeof type);
    }
    return v;
}

class Codec : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        store(dword(0));
        ASSERT_EQ(m_config.findItem(eSettings, L"Outer", m_items), eOk);
        ASSERT_EQ(m_config.findItem(eSettings, L"Outer/Inner", m_values), eOk);
    }

    static void store(const RawValue& value)
    {
        setRaw(HKEY_CURRENT_USER, settings + "\\Outer\\Inner", "v", value);
    }
    static RawValue stored() { return getRaw(HKEY_CURRENT_USER, settings + "\\Outer\\Inner", "v").value(); }

    /// Has every reader read the value into an object that holds a text, which an empty result says it keeps.
    void expectRead(Error error, const std::string& result)
    {
        for (const auto& read : m_readers) {
            SCOPED_TRACE(&read - m_readers.data());
            VelaVariant v;
            v.setString(L"kept");
            EXPECT_EQ(read(v), error);
            EXPECT_EQ(describe(v), result.empty() ? "5/14 0 0 0 'kept' -" : result);
        }
    }

    TarvoConfig::ItemIterator m_items;
    TarvoConfig::ValueIterator m_values;
    const std::vector<std::function<Error(VelaVariant&)>> m_readers = {
        [this](VelaVariant& v) { return m_config.getValue(eSettings, L"Outer\\Inner\\v", v); },
        [this](VelaVariant& v) { return m_config.getValue(m_items, L"v", v); },
        [this](VelaVariant& v) { return m_values.value(v); }};
    const std::vector<std::function<Error(const VelaVariant&)>> m_writers = {
        [this](const VelaVariant& v) { return m_config.addValue(eSettings, L"Outer\\Inner", L"v", v); },
        [this](const VelaVariant& v) { return m_config.setValue(eSettings, L"Outer\\Inner\\v", v); },
        [this](const VelaVariant& v) { return m_config.setValue(m_items, L"v", v); },
        [this](const VelaVariant& v) { return m_values.setValue(v); }};
};

TEST_F(Codec, WritesByType)
{
    const RawValue before = {REG_BINARY, "before"};
    const std::pair<VelaVariant, RawValue> rows[] = {
        {variant(0), before},
        {variant(1, [](VelaVariant& v) { v.setInt(-7); }), {REG_DWORD, "\xF9\xFF\xFF\xFF"}},
        {variant(1), {REG_DWORD, std::string(4, 0)}},
        {variant(2, [](VelaVariant& v) { v.setInt64(0x0807060504030201); }),
         {REG_QWORD, "\1\2\3\4\5\6\7\10"}},
        {variant(2), {REG_QWORD, std::string(8, 0)}},
        {variant(3, [](VelaVariant& v) { v.setDouble(1.5); }),
         {REG_BINARY, std::string("\0\0\0\0\0\0\xF8\x3F", 8)}},
        {variant(3), {REG_BINARY, std::string(8, 0)}},
        {variant(4, [](VelaVariant& v) { v.setBinary("0123456789abcdef", 16); }),
         {REG_BINARY, "0123456789abcdef"}},
        {variant(4), before},
        {variant(5, [](VelaVariant& v) { v.setString(L"abc"); }), {REG_SZ, std::string("a\0b\0c\0\0\0", 8)}},
        {variant(5), {REG_SZ, std::string(2, 0)}},
        {variant(6), before},
        {variant(-1), before},
    };
    for (const auto& [value, expected] : rows) {
        for (const auto& write : m_writers) {
            SCOPED_TRACE(describe(value) + " by " + std::to_string(&write - m_writers.data()));
            store(before);
            EXPECT_EQ(write(value), eOk);
            EXPECT_EQ(stored(), expected);
            const auto refused =
                intercept<decltype(RegSetValueExW)>("RegSetValueExW", [](auto...) { return denied; });
            EXPECT_EQ(write(value), expected == before ? eOk : TarvoConfig::eRegistryError);
        }
    }
}

TEST_F(Codec, ReadsByStoredType)
{
    const std::string abc = text("abc").bytes;
    const std::pair<RawValue, std::string> rows[] = {
        {text("abc"), "5/12 0 0 0 'abc' -"},
        {{REG_SZ, abc + abc}, "5/12 0 0 0 'abc' -"},
        {{REG_SZ, abc.substr(0, 5)}, "5/12 0 0 0 'abc' -"}, // half a character at the end
        {{REG_SZ, ""}, "5/6 0 0 0 '' -"},
        {{REG_BINARY, "abc"}, "4/7 0 0 0 '' abc"},
        {{REG_BINARY, ""}, "4/0 0 0 0 '' -"},
        {{REG_BINARY, "8 bytes."}, "4/12 0 0 0 '' 8 bytes."}, // a double's, too
        {dword(0x80000000), "1/8 -2147483648 0 0 '' -"},
        {{REG_DWORD, "\1\1"}, "1/8 257 0 0 '' -"},
        {{REG_DWORD, "12345"}, ""},
        {{REG_QWORD, "\1\1\1\1\1\1\1"}, "2/12 0 282578800148737 0 '' -"},
        {{REG_QWORD, "123456789"}, ""},
        {{REG_NONE, abc}, ""},
        {{REG_EXPAND_SZ, abc}, ""},
        {{REG_DWORD_BIG_ENDIAN, "1234"}, ""},
        {{REG_MULTI_SZ, abc + text("").bytes}, ""},
        {{12, "1234"}, ""},
    };
    int count = 0;
    const auto filling = countBlocks(count, libraryModule);
    for (const auto& [value, result] : rows) {
        SCOPED_TRACE(testing::PrintToString(value));
        store(value);
        ASSERT_EQ(stored(), value);
        expectRead(result.empty() ? TarvoConfig::eWrongType : eOk, result);
    }
    // A text without its terminator: the first half of another, since the call may look behind what it
    // stores.
    const auto halved = intercept<decltype(RegSetValueExW)>(
        "RegSetValueExW", [](auto real, HKEY key, Text name, DWORD reserved, DWORD type, auto* data,
                             DWORD size) { return real(key, name, reserved, type, data, size / 2); });
    EXPECT_EQ(m_writers[0](variant(5, [](VelaVariant& v) { v.setString(L"abcdefg"); })), eOk);
    ASSERT_EQ(stored().bytes.size(), 8u);
    expectRead(eOk, "5/14 0 0 0 'abcd' -");
}

TEST_F(Codec, SecondQueryDecides)
{
    const RawValue failure = {99, ""};
    const RawValue otherType = {98, ""};
    const RawValue binary = {REG_BINARY, "abc"};
    const RawValue qword = {REG_QWORD, "12345678"};
    struct
    {
        RawValue first, second;
        std::string result;
    } const rows[] = {
        {text("ab"), text("abcdef"), "5/18 0 0 0 'abcdef' -"}, // 2 * 6 + 2 bytes
        {text("ab"), text("abcdefg"), ""},
        {text("ab"), binary, ""},
        {text("ab"), failure, ""},
        {text("ab"), otherType, ""},
        {binary, {REG_BINARY, "a"}, "4/5 0 0 0 '' a"},
        {binary, {REG_BINARY, ""}, "4/0 0 0 0 '' -"},
        {binary, {REG_BINARY, "abcd"}, ""},
        {binary, failure, ""},
        {binary, otherType, ""},
        {dword(1), failure, ""},
        {dword(1), otherType, ""},
        {qword, failure, ""},
        {qword, otherType, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.first) + " " + testing::PrintToString(row.second));
        const auto changed = intercept<decltype(RegQueryValueExW)>(
            "RegQueryValueExW",
            [&](auto real, HKEY key, Text name, auto* reserved, DWORD* type, BYTE* data, auto* size) {
                const bool asIs = row.second == failure || row.second == otherType;
                store(data == nullptr || asIs ? row.first : row.second);
                const LSTATUS status = real(key, name, reserved, type, data, size);
                *type = data != nullptr && row.second == otherType ? REG_NONE : *type;
                return data != nullptr && row.second == failure ? denied : status;
            });
        expectRead(row.result.empty() ? TarvoConfig::eWrongType : eOk, row.result);
    }
}

TEST_F(Codec, WithoutMemoryThrows)
{
    const std::tuple<RawValue, int, std::string> rows[] = {
        {text("abc"), 1, "5/14 0 0 0 'kept' -"},
        {text("abc"), 2, "5/0 0 0 0 '' -"},
        {{REG_BINARY, "abc"}, 1, "5/14 0 0 0 'kept' -"},
        {{REG_BINARY, "abc"}, 2, "4/0 0 0 0 '' -"},
        {dword(1), 1, "5/0 0 0 0 '' -"},
        {{REG_QWORD, "12345678"}, 1, "5/0 0 0 0 '' -"},
    };
    int count = 0;
    VelaVariant v;
    for (const auto& [value, refused, result] : rows) {
        for (const auto& read : m_readers) {
            SCOPED_TRACE(testing::PrintToString(value));
            store(value);
            v.setString(L"kept");
            const auto refusing = countBlocks(count, libraryModule, refused);
            EXPECT_EQ(thrownCode([&] { read(v); }), 6);
            EXPECT_EQ(describe(v), result);
        }
    }
    store(dword(1));
    const auto counting = countBlocks(count, libraryModule); // repeated reads use one block
    for (const auto& read : m_readers) {
        EXPECT_EQ(read(v), eOk);
    }
    EXPECT_EQ(count, 1);
}

} // namespace
