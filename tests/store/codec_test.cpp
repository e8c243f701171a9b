// Typed values to and from registry values, by every operation that reads or writes one.
#include "store.h"

#include <functional>
#include <optional>

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
    void expectRead(const std::string& result)
    {
        for (const auto& read : m_readers) {
            SCOPED_TRACE(&read - m_readers.data());
            VelaVariant v;
            v.setString(L"kept");
            EXPECT_EQ(read(v), result.empty() ? TarvoConfig::eWrongType : eOk);
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
        {variant(3, [](VelaVariant& v) { v.setDouble(1.5); }),
         {REG_BINARY, std::string("\0\0\0\0\0\0\xF8\x3F", 8)}},
        {variant(4, [](VelaVariant& v) { v.setBinary("0123456789abcdef", 16); }),
         {REG_BINARY, "0123456789abcdef"}},
        {variant(4), before},
        {variant(5, [](VelaVariant& v) { v.setString(L"abc"); }), {REG_SZ, std::string("a\0b\0c\0\0\0", 8)}},
        {variant(5), {REG_SZ, std::string(2, 0)}},
        {variant(6), before},
    };
    for (const auto& [value, expected] : rows) {
        for (const auto& write : m_writers) {
            SCOPED_TRACE(describe(value) + " by " + std::to_string(&write - m_writers.data()));
            store(before);
            EXPECT_EQ(write(value), eOk);
            EXPECT_EQ(stored(), expected);
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
        {dword(0x80000000), "1/8 -2147483648 0 0 '' -"},
        {{REG_DWORD, "\1\1"}, "1/8 257 0 0 '' -"},
        {{REG_DWORD, "12345"}, ""},
        {{REG_QWORD, "\1\1\1\1\1\1\1"}, "2/12 0 282578800148737 0 '' -"},
        {{REG_QWORD, "123456789"}, ""},
        {{REG_NONE, abc}, ""},
        {{REG_EXPAND_SZ, abc}, ""},
        {{REG_MULTI_SZ, abc + text("").bytes}, ""},
    };
    int count = 0;
    const Patch filling = countBlocks(count, libraryModule);
    for (const auto& [value, result] : rows) {
        SCOPED_TRACE(testing::PrintToString(value));
        store(value);
        ASSERT_EQ(stored(), value);
        expectRead(result);
    }
    // A text without its terminator: the first half of another, since the call may look behind what it
    // stores.
    const Patch halved = intercept<"RegSetValueExW", decltype(RegSetValueExW)>(
        [](auto real, HKEY key, LPCWSTR name, DWORD reserved, DWORD type, auto* data, DWORD size) {
            return real(key, name, reserved, type, data, size / 2);
        });
    EXPECT_EQ(m_writers[0](variant(5, [](VelaVariant& v) { v.setString(L"abcdefg"); })), eOk);
    ASSERT_EQ(stored().bytes.size(), 8u);
    expectRead("5/14 0 0 0 'abcd' -");
}

TEST_F(Codec, SecondQueryDecides)
{
    const RawValue binary = {REG_BINARY, "abc"};
    const RawValue failure = {99, ""};
    const std::tuple<RawValue, RawValue, std::string> rows[] = {
        {text("ab"), text("abcdef"), "5/18 0 0 0 'abcdef' -"}, // 2 * 6 + 2 bytes
        {text("ab"), text("abcdefg"), ""},
        {text("ab"), binary, ""},
        {text("ab"), failure, ""},
        {binary, {REG_BINARY, "a"}, "4/5 0 0 0 '' a"},
        {binary, {REG_BINARY, ""}, "4/0 0 0 0 '' -"},
        {binary, {REG_BINARY, "abcd"}, ""},
        {binary, failure, ""},
        {dword(1), {REG_BINARY, "1234"}, ""},
    };
    for (const auto& [first, second, result] : rows) {
        SCOPED_TRACE(testing::PrintToString(first) + " " + testing::PrintToString(second));
        const auto changed = [&, &before = first, &after = second](auto real, HKEY key, LPCWSTR name,
                                                                   auto* reserved, DWORD* type, BYTE* data,
                                                                   DWORD* size) {
            if (data != nullptr && after == failure) {
                return denied;
            }
            store(data == nullptr ? before : after);
            return real(key, name, reserved, type, data, size);
        };
        const Patch patch = intercept<"RegQueryValueExW", decltype(RegQueryValueExW)>(changed);
        expectRead(result);
    }
}

} // namespace
