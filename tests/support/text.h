// Texts in tests: UTF-8 outside, UTF-16 towards the library.
#pragma once

#include <RkUInfo/Text.hpp>

#include <gtest/gtest.h>

#include <concepts>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

using rkuinfo::utf8; ///< "" for null

/// A terminated UTF-16 text.
class Wide
{
public:
    template <std::convertible_to<std::string_view> Source>
    Wide(const Source& source)
    {
        const rkuinfo::Text units = rkuinfo::utf16(source);
        m_units.assign(units.begin(), units.end());
        m_units.push_back(0);
    }

    operator const wchar_t*() const { return m_units.data(); }
    std::size_t length() const { return m_units.size() - 1; }
    /// The text and its terminator as bytes, as a REG_SZ is stored.
    std::string bytes() const { return {reinterpret_cast<const char*>(m_units.data()), 2 * m_units.size()}; }

private:
    std::vector<wchar_t> m_units;
};

/// What a function writes into a buffer of 1024 characters that begins with "?"; behind "failed: " where the
/// length that it gives is 0.
template <typename Function>
std::string textOf(Function function)
{
    wchar_t buffer[1024] = L"?";
    const auto length = static_cast<std::size_t>(function(buffer));
    const std::string written = utf8(buffer);
    EXPECT_TRUE(length == 0 || length == Wide(written).length()) << length << ' ' << written;
    return length == 0 ? "failed: " + written : written;
}

} // namespace testing_support
