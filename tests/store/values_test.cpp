// The typed value, and how it is stored in the registry.
#include "store.h"

namespace {

/// Sets the type of a variant that has no block.
void setType(VelaVariant& v, std::int32_t type)
{
    v = VelaVariant();
    std::memcpy(static_cast<void*>(&v), &type, sizeof type);
}

/// A variant, the expected output of describe(), and the expected registry value if the variant can be
/// stored.
const struct Sample
{
    void (*set)(VelaVariant&);
    std::string described;
    std::optional<RawValue> stored;
} samples[] = {
    {[](auto& v) { setType(v, 0); }, "0/0 0 0 0 '' -", {}},
    {[](auto& v) { setType(v, 1); }, "1/0 0 0 0 '' -", dword(0)},
    {[](auto& v) { setType(v, 5); }, "5/0 0 0 0 '' -", text("")},
    {[](auto& v) { setType(v, 6); }, "6/0 0 0 0 '' -", {}},
    {[](auto& v) { v.setInt(-5); }, "1/8 -5 0 0 '' -", {{REG_DWORD, "\xFB\xFF\xFF\xFF"}}},
    {[](auto& v) { v.setInt64(0x2020202020202020); },
     "2/12 0 2314885530818453536 0 '' -",
     {{REG_QWORD, "        "}}},
    {[](auto& v) { v.setDouble(1.5); }, "3/12 0 0 1.5 '' -", {{REG_BINARY, {"\0\0\0\0\0\0\xF8\x3F", 8}}}},
    {[](auto& v) { v.setBinary("123456789", 9); }, "4/13 0 0 0 '' 123456789", {{REG_BINARY, "123456789"}}},
    {[](auto& v) { v.setBinary("abc", 0); }, "4/0 0 0 0 '' -", {}},
    {[](auto& v) { v.setBinary(nullptr, 16); }, "4/0 0 0 0 '' -", {}},
    {[](auto& v) { v.setString(L"abc"); }, "5/12 0 0 0 'abc' -", text("abc")},
    {[](auto& v) { v.setString(nullptr); }, "5/6 0 0 0 '' -", text("")},
};

/// Counts this program's allocations, and fills the allocated blocks. If `refused` is n, the n-th allocation
/// fails.
struct Blocks
{
    int count = 0, refused = 0;
    Patch patch = intercept<"malloc", void*(std::size_t)>(
        [this](auto real, std::size_t size) {
            void* const block = ++count == refused ? nullptr : real(size);
            return block == nullptr ? nullptr : std::memset(block, 0xCC, size);
        },
        programModule);
};

/// Returns the code of the exception that a call throws, or 0 if it does not throw.
int thrownCode(const std::function<void()>& call)
{
    try {
        call();
    } catch (RkErrorStatus* exception) {
        const std::unique_ptr<RkErrorStatus> owned(exception);
        EXPECT_EQ(utf8(owned->text()) + std::to_string(owned->number()), "\"\"0");
        return owned->code();
    }
    return 0;
}

// ---- The value

void checkAfter(const Sample& before, const Sample& after)
{
    VelaVariant source, set;
    after.set(source);
    before.set(set);
    VelaVariant copy(set), moved(set), failing(set);
    const VelaVariant::VarType type = source.type();
    const bool isFixed = type >= VelaVariant::eInt && type <= VelaVariant::eDouble;
    const bool needsBlock = source.blockSize() > 0 && !(isFixed && &before == &after);
    const std::string left = std::to_string(isFixed ? failing.type() : type) + "/0 0 0 0 '' -";

    Blocks blocks;
    after.set(set);
    EXPECT_EQ(blocks.count, needsBlock ? 1 : 0);
    blocks.refused = blocks.count + 1;
    EXPECT_EQ(thrownCode([&] { after.set(failing); }), needsBlock ? 6 : 0);
    blocks.refused = 0; // describe() must be able to allocate
    EXPECT_EQ(describe(failing), needsBlock ? left : after.described);
    copy = source;
    blocks.count = 0;
    moved = std::move(source);
    VelaVariant last(std::move(moved));
    VelaVariant& same = last;
    last = same;
    last = std::move(same);
    EXPECT_EQ(blocks.count, 0);
    for (const VelaVariant* const each : {&set, &copy, &last}) {
        EXPECT_EQ(describe(*each), after.described);
    }
    // NOLINTNEXTLINE(bugprone-use-after-move): both are eNull now
    EXPECT_EQ(describe(source) + describe(moved), samples[0].described + samples[0].described);
}

TEST(Variant, AcceptsEveryValueAfterEveryOther)
{
    for (const Sample& before : samples) {
        for (const Sample& after : samples) {
            SCOPED_TRACE(before.described + ", then " + after.described);
            checkAfter(before, after);
        }
    }
    VelaVariant v; // setters accept a pointer into the variant's own block
    v.setString(L"abc");
    v.setString(v.getString() + 1);
    EXPECT_EQ(describe(v), "5/10 0 0 0 'bc' -");
    v.setBinary("abcdef", 6);
    v.setBinary(static_cast<const char*>(v.getBinary()) + 2, 3);
    EXPECT_EQ(describe(v), "4/7 0 0 0 '' cde");
}

TEST(Variant, AllocatesABlockOfItsTypesSizeOrThrows)
{
    constexpr int rows[][4] = {
        // Each row: the type, the requested size, the recorded size, and the thrown code (0 if none).
        {0, 0, 0, 0},  {0, -1, 0, 0}, {1, -7, 8, 0},        {2, 0, 12, 0},
        {3, 0, 12, 0}, {4, 0, 0, 3},  {5, -1, 0, 3},        {6, 0, 0, 3},
        {0, 1, 5, 0},  {1, 3, 7, 0},  {4, INT32_MAX, 0, 6}, {4, INT32_MAX - 3, 0, 6},
    };
    for (const auto& [type, size, recorded, code] : rows) {
        SCOPED_TRACE(std::to_string(type) + ", " + std::to_string(size));
        void* block = nullptr;
        const auto allocate = [&block, varType = static_cast<VelaVariant::VarType>(type), bytes = size] {
            block = VelaVariant::allocBlock(varType, bytes);
        };
        EXPECT_EQ(thrownCode(allocate), code);
        EXPECT_EQ(block == nullptr ? 0 : *static_cast<const std::int32_t*>(block), recorded);
        std::free(block);
    }
}

// ---- Stored values

class StoredValues : public StoreTest
{
protected:
    static void store(const RawValue& value) { setRaw(HKEY_CURRENT_USER, settings, "v", value); }
    static RawValue stored() { return getRaw(HKEY_CURRENT_USER, settings, "v").value(); }

    /// Reads the value into a variant that contains a string. If `result` is empty, the read must fail and
    /// leave the string unchanged.
    void expectRead(const std::string& result)
    {
        VelaVariant v;
        v.setString(L"kept");
        EXPECT_EQ(m_config.getValue(eSettings, L"v", v), result.empty() ? TarvoConfig::eWrongType : eOk);
        EXPECT_EQ(describe(v), result.empty() ? "5/14 0 0 0 'kept' -" : result);
    }
};

TEST_F(StoredValues, HaveTheRegistryTypeOfTheVariant)
{
    const RawValue before = {REG_BINARY, "before"};
    VelaVariant value;
    for (const Sample& sample : samples) {
        sample.set(value);
        store(before);
        EXPECT_EQ(m_config.setValue(eSettings, L"v", value), eOk);
        EXPECT_EQ(stored(), sample.stored.value_or(before)) << sample.described;
    }
}

TEST_F(StoredValues, SetTheTypeOfTheVariant)
{
    const std::string abc = text("abc").bytes;
    const std::pair<RawValue, std::string> rows[] = {
        {{REG_SZ, abc + abc}, "5/12 0 0 0 'abc' -"},
        {{REG_SZ, abc.substr(0, 5)}, "5/12 0 0 0 'abc' -"}, // the string ends with half a code unit
        {{REG_SZ, abc.substr(0, 4)}, "5/10 0 0 0 'ab' -"},  // no terminator
        {{REG_SZ, ""}, "5/6 0 0 0 '' -"},
        {{REG_BINARY, ""}, "4/0 0 0 0 '' -"},
        {dword(0x80000000), "1/8 -2147483648 0 0 '' -"},
        {{REG_DWORD, "\1\1"}, "1/8 257 0 0 '' -"},
        {{REG_DWORD, "12345"}, ""},
        {{REG_QWORD, "\1\1\1\1\1\1\1"}, "2/12 0 282578800148737 0 '' -"},
        {{REG_EXPAND_SZ, abc}, ""},
        {{REG_MULTI_SZ, abc + text("").bytes}, ""},
    };
    for (const auto& [value, result] : rows) {
        SCOPED_TRACE(testing::PrintToString(value));
        store(value);
        ASSERT_EQ(stored(), value);
        expectRead(result);
    }
}

TEST_F(StoredValues, MayChangeBetweenTheTwoQueries)
{
    const RawValue binary = {REG_BINARY, "abc"};
    const std::tuple<RawValue, RawValue, std::string> rows[] = {
        {text("ab"), text("abcdef"), "5/18 0 0 0 'abcdef' -"}, // 2 * 6 + 2 bytes
        {text("ab"), text("abcdefg"), ""},
        {text("ab"), binary, ""},
        {binary, text("ab"), ""},
        {binary, {REG_BINARY, ""}, "4/0 0 0 0 '' -"},
        {dword(1), {REG_BINARY, "1234"}, ""},
    };
    makeKey(HKEY_CURRENT_USER, settings);
    for (const auto& [first, second, result] : rows) {
        SCOPED_TRACE(testing::PrintToString(first) + " " + testing::PrintToString(second));
        const auto query = [&before = first, &after = second](auto real, HKEY key, LPCWSTR name,
                                                              auto* reserved, auto* type, BYTE* data,
                                                              auto* size) {
            store(data == nullptr ? before : after);
            return real(key, name, reserved, type, data, size);
        };
        const Patch changing = intercept<"RegQueryValueExW", decltype(RegQueryValueExW)>(query);
        expectRead(result);
    }
}

} // namespace
