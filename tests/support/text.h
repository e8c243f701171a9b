// Texts in tests: UTF-8 outside, UTF-16 towards the library.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace testing_support {

/// UTF-8 of a terminated text; "" for null. A lone surrogate becomes its three-byte form and comes back as it
/// was.
std::string utf8(const wchar_t* text);

/// A terminated UTF-16 text.
class Wide
{
public:
    Wide(const char* text) : Wide(std::string_view(text)) {}
    Wide(const std::string& text) : Wide(std::string_view(text)) {}
    Wide(std::string_view text);

    operator const wchar_t*() const { return m_units.data(); }
    std::size_t length() const { return m_units.size() - 1; }
    /// The text and its terminator as bytes, as a REG_SZ is stored.
    std::string bytes() const;

private:
    std::vector<wchar_t> m_units;
};

} // namespace testing_support
