// Shared by the tests of the configuration store.
#pragma once

#include "support/test.h"

#include <cstring>

namespace testing_support {

inline constexpr Error eOk = TarvoConfig::eOk;
inline constexpr TarvoConfig::Path eSettings = TarvoConfig::eSettings;

/// Starts the library for the company Acme and the product Widget, and checks that each test leaves no key
/// open.
class StoreTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(startAcme(), eOk); }

    KeyCounter m_keys;
    TarvoConfig& m_config = *velaConfig();
};

/// Prints a variant: type/block size, then the result of each getter.
inline std::string describe(const VelaVariant& v)
{
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.Move): a moved-from variant is eNull
    const auto* const bytes = static_cast<const char*>(v.getBinary());
    std::ostringstream out;
    out << v.type() << '/' << v.blockSize() << ' ' << v.getInt() << ' ' << v.getInt64() << ' '
        << v.getDouble() << " '" << utf8(v.getString()) << "' "
        << (bytes == nullptr ? "-" : std::string(bytes, static_cast<std::size_t>(v.blockSize() - 4)));
    return out.str();
}

/// Makes the library read another Windows version number.
[[nodiscard]] inline auto pretendVersion(int version)
{
    return intercept<"velaGetWindowsVersion", decltype(velaGetWindowsVersion)>(
        [=](auto, auto*...) { return version; });
}

/// An operation on a path. For isItemExist, `call` returns eOk if the item exists, otherwise eInvalidInput.
struct Operation
{
    std::string name;
    std::size_t limit; ///< the maximum combined length of the root and the sub-path
    std::string last;  ///< the part of the argument that follows the sub-path
    Error (*call)(TarvoConfig&, TarvoConfig::Path, LPCWSTR, VelaVariant&);
};

// Indices into `operations`.
inline constexpr int eGet = 1, eRemoveItem = 5;

template <typename Iterator>
Error find(TarvoConfig& config, TarvoConfig::Path root, LPCWSTR path, VelaVariant&)
{
    Iterator it;
    return config.findItem(root, path, it);
}

const Operation operations[] = {
    {"isItemExist", 1020, "",
     [](auto& c, auto p, LPCWSTR s, auto&) {
         return c.isItemExist(p, s) == 1 ? eOk : TarvoConfig::eInvalidInput;
     }},
    {"getValue", 1020, "/n", [](auto& c, auto p, LPCWSTR s, auto& v) { return c.getValue(p, s, v); }},
    {"setValue", 1021, "/n", [](auto& c, auto p, LPCWSTR s, auto& v) { return c.setValue(p, s, v); }},
    {"addItem", 1021, "", [](auto& c, auto p, LPCWSTR s, auto&) { return c.addItem(p, s); }},
    {"addValue", 1021, "", [](auto& c, auto p, LPCWSTR s, auto& v) { return c.addValue(p, s, L"n", v); }},
    {"removeItem", 1021, "/n", [](auto& c, auto p, LPCWSTR s, auto&) { return c.removeItem(p, s); }},
    {"removeValue", 1021, "", [](auto& c, auto p, LPCWSTR s, auto&) { return c.removeValue(p, s, L"n"); }},
    {"findItem of items", 1021, "", find<TarvoConfig::ItemIterator>},
    {"findItem of values", 1021, "", find<TarvoConfig::ValueIterator>},
};

} // namespace testing_support
