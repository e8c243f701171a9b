// Strings are UTF-8 in tests and UTF-16 in calls to the library.
#pragma once

#include <RkUInfo/Text.hpp>

#include <concepts>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

using rkuinfo::utf8; ///< "" for null

/// A null-terminated UTF-16 string.
class Wide
{
public:
    template <std::convertible_to<std::string_view> Source>
    Wide(const Source& source)
    {
        const rkuinfo::Text units = rkuinfo::utf16(source);
        m_units.assign(units.c_str(), units.c_str() + units.size() + 1);
    }

    operator const wchar_t*() const { return m_units.data(); }
    std::size_t length() const { return m_units.size() - 1; }
    /// Returns the string and its terminator as the bytes of a REG_SZ.
    std::string bytes() const { return {reinterpret_cast<const char*>(m_units.data()), 2 * m_units.size()}; }

private:
    std::vector<wchar_t> m_units;
};

} // namespace testing_support
