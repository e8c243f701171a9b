// The typed value: blocks, setters, copies and failures.
#include "store.h"
#include "support/recorder.h"

#include <functional>

namespace {

using namespace testing_support;

/// The code of the exception that a call throws, -1 for a null one, 0 when none is thrown.
int thrownCode(const std::function<void()>& call)
{
    try {
        call();
    } catch (RkErrorStatus* exception) {
        const std::unique_ptr<RkErrorStatus> owned(exception);
        return exception == nullptr ? -1 : exception->code();
    }
    return 0;
}

struct Setter
{
    void (*set)(VelaVariant&);
    bool fixedSize;
    std::string result;
};

const Setter setters[] = {
    {[](VelaVariant&) {}, false, "0/0 0 0 0 '' -"},
    {[](VelaVariant& v) { v.setInt(-5); }, true, "1/8 -5 0 0 '' -"},
    {[](VelaVariant& v) { v.setInt64(1099511627776); }, true, "2/12 0 1099511627776 0 '' -"},
    {[](VelaVariant& v) { v.setDouble(1.5); }, true, "3/12 0 0 1.5 '' -"},
    {[](VelaVariant& v) { v.setBinary("abcdefgh", 8); }, false, "4/12 0 0 0 '' abcdefgh"},
    {[](VelaVariant& v) { v.setBinary("abc", 0); }, false, "4/0 0 0 0 '' -"},
    {[](VelaVariant& v) { v.setBinary(nullptr, 16); }, false, "4/0 0 0 0 '' -"},
    {[](VelaVariant& v) { v.setString(L"abc"); }, false, "5/12 0 0 0 'abc' -"},
    {[](VelaVariant& v) { v.setString(nullptr); }, false, "5/6 0 0 0 '' -"},
};

std::string withoutBlock(VelaVariant::VarType type)
{
    return std::to_string(type) + "/0 0 0 0 '' -";
}

TEST(Variant, EverySetterAfterEveryOther)
{
    for (const Setter& before : setters) {
        for (std::size_t i = 1; i < std::size(setters); ++i) {
            const Setter& setter = setters[i];
            SCOPED_TRACE(before.result + ", then " + setter.result);
            VelaVariant v;
            VelaVariant failing;
            before.set(v);
            before.set(failing);
            int count = 0;
            Patch counting = countBlocks(count, programModule);
            setter.set(v);
            counting.reset();
            const bool reused = &before == &setter && setter.fixedSize;
            EXPECT_EQ(describe(v), setter.result);
            EXPECT_EQ(count, reused || v.blockSize() == 0 ? 0 : 1);
            if (count > 0) {
                const VelaVariant::VarType type = setter.fixedSize ? failing.type() : v.type();
                const Patch refusing = countBlocks(count, programModule, 1);
                EXPECT_EQ(thrownCode([&] { setter.set(failing); }), 6);
                EXPECT_EQ(describe(failing), withoutBlock(type));
            }
        }
    }
}

TEST(Variant, CopiesOwnTheirBlock)
{
    for (const Setter& setter : setters) {
        SCOPED_TRACE(setter.result);
        int count = 0;
        VelaVariant source;
        setter.set(source);
        VelaVariant copy(source);
        VelaVariant assigned;
        assigned.setString(L"before");
        if (source.blockSize() > 0) {
            const Patch refusing = countBlocks(count, programModule, 1);
            EXPECT_EQ(thrownCode([&] { assigned = source; }), 6);
            EXPECT_EQ(utf8(assigned.getString()), "before");
        }
        assigned = source;
        source.setString(L"other");
        EXPECT_EQ(describe(copy), setter.result);
        const VelaVariant& same = assigned;
        assigned = same;
        EXPECT_EQ(describe(assigned), setter.result);

        const Patch counting = countBlocks(count, programModule);
        VelaVariant moved(std::move(copy));
        source = std::move(moved);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(describe(source), setter.result);
        EXPECT_EQ(describe(moved), setters[0].result); // NOLINT(bugprone-use-after-move): left as eNull
        EXPECT_EQ(describe(copy), setters[0].result);  // NOLINT(bugprone-use-after-move)
    }
}

TEST(Variant, SetFromItsOwnBlock)
{
    VelaVariant v;
    v.setString(L"abc");
    v.setString(v.getString() + 1);
    EXPECT_EQ(describe(v), "5/10 0 0 0 'bc' -");
    v.setBinary("abcdef", 6);
    v.setBinary(static_cast<const char*>(v.getBinary()) + 2, 3);
    EXPECT_EQ(describe(v), "4/7 0 0 0 '' cde");
}

TEST(Variant, BlocksByTypeAndSize)
{
    struct
    {
        int type, size, recorded, code;
    } constexpr rows[] = {
        {0, 0, 0, 0},  {0, -1, 0, 0}, {1, -7, 8, 0},        {2, 0, 12, 0},
        {3, 0, 12, 0}, {4, 0, 0, 3},  {5, -1, 0, 3},        {6, 0, 0, 3},
        {0, 1, 5, 0},  {1, 3, 7, 0},  {4, INT32_MAX, 0, 6}, {4, INT32_MAX - 3, 0, 6},
    };
    for (const auto& [type, size, recorded, code] : rows) {
        SCOPED_TRACE(std::to_string(type) + ", " + std::to_string(size));
        const auto asked = static_cast<VelaVariant::VarType>(type);
        const int bytes = size;
        std::unique_ptr<void, decltype(&std::free)> block(nullptr, &std::free);
        EXPECT_EQ(thrownCode([&] { block.reset(VelaVariant::allocBlock(asked, bytes)); }), code);
        EXPECT_EQ(block == nullptr ? 0 : *static_cast<const std::int32_t*>(block.get()), recorded);
    }
}

TEST_F(StoreTest, FailureIsRecordedThenThrownByPointer)
{
    setRaw(HKEY_CURRENT_USER, settings, "v", dword(7));
    VelaVariant value;
    const auto inLibrary = [&] {
        int count = 0;
        const Patch refusing = countBlocks(count, libraryModule, 1);
        m_config.getValue(eSettings, L"v", value);
    };
    const std::tuple<const char*, std::function<void()>, int, VelaVariant::VarType> throwers[] = {
        {libraryModule, inLibrary, 6, VelaVariant::eString},
        {programModule, [&] { value.setBinary("x", -1); }, 3, VelaVariant::eBinary}};
    for (const auto& [module, call, code, type] : throwers) {
        Recorder recorder;
        value.setString(L"before");
        try {
            call();
            ADD_FAILURE() << "nothing thrown";
        } catch (RkException* exception) {
            const std::unique_ptr<RkException> owned(exception);
            EXPECT_EQ(recorder.recorded, std::vector{exception});
            EXPECT_EQ(owned->code(), code);
            EXPECT_EQ(utf8(owned->text()), "\"\"");
            EXPECT_EQ(owned->number(), 0);
            EXPECT_EQ(describe(value), withoutBlock(type));
        }
        constexpr bool isLong = sizeof(long) == 8; // as names are mangled
        const auto refuse = [](auto...) -> void* { return nullptr; };
        const Patch noException = hasOwnHeapOperators
                                      ? intercept<"malloc", void*(std::size_t)>(refuse, module)
                                  : intercept < isLong ? Name("_ZnwmRKSt9nothrow_t")
                                                       : Name("_ZnwyRKSt9nothrow_t"),
                    void * (std::size_t, const std::nothrow_t&) > (refuse, module);
        recorder.recorded.clear();
        EXPECT_EQ(thrownCode(call), -1);
        EXPECT_TRUE(recorder.recorded.empty());
    }
}

} // namespace
