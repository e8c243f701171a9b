// SPDX-License-Identifier: MIT
// Strings for C++20 clients: owned UTF-16, and conversion from and to UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rkuinfo {

// On Linux, clients are compiled with -fshort-wchar, but the C++ runtime's std::wstring still expects 32-bit
// characters, so Text is a std::u16string.
#if defined(_WIN32)
using Text = std::wstring;
#else
using Text = std::u16string;
#endif
using TextView = std::basic_string_view<Text::value_type>;

/// Copies a null-terminated string; a null pointer becomes the empty string.
inline Text text(const wchar_t* source)
{
    Text copy;
    while (source != nullptr && *source != 0) {
        copy.push_back(static_cast<Text::value_type>(*source++));
    }
    return copy;
}

namespace detail {

/// Removes and returns the first code point of a non-empty string. A lone surrogate counts as a code point.
inline char32_t takeCodePoint(TextView& source)
{
    const auto isAt = [&](std::size_t at, char32_t kind) {
        return at < source.size() && (source[at] & 0xFC00U) == kind;
    };
    char32_t point = source[0];
    const bool isPair = isAt(0, 0xD800) && isAt(1, 0xDC00);
    if (isPair) {
        point = 0x10000 + ((point & 0x3FF) << 10) + (source[1] & 0x3FFU);
    }
    source.remove_prefix(isPair ? 2 : 1);
    return point;
}

/// Removes and returns the first code point of non-empty UTF-8 text. If the text does not start with a valid
/// character, removes one byte and returns U+FFFD.
inline char32_t takeCodePoint(std::string_view& source)
{
    const auto lead = static_cast<unsigned char>(source[0]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    char32_t point = length == 1 ? lead : lead & (0x7FU >> length);
    std::size_t read = 1;
    while (read < length && read < source.size() && (source[read] & 0xC0) == 0x80) {
        point = point << 6 | (static_cast<unsigned char>(source[read++]) & 0x3FU);
    }
    const bool isCharacter = (length == 1 || lead >= 0xC2) && lead < 0xF5 && read == length &&
                             point >= smallest[length] && point < 0x110000;
    source.remove_prefix(isCharacter ? length : 1);
    return isCharacter ? point : 0xFFFD;
}

inline void appendCodePoint(std::string& bytes, char32_t point)
{
    const unsigned more = point < 0x80 ? 0 : point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    constexpr char32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    bytes.push_back(static_cast<char>(leads[more] | point >> (6 * more)));
    for (unsigned left = more; left > 0; --left) {
        bytes.push_back(static_cast<char>(0x80 | (point >> (6 * (left - 1)) & 0x3F)));
    }
}

inline void appendCodePoint(Text& units, char32_t point)
{
    if (point >= 0x10000) {
        units.push_back(static_cast<Text::value_type>(0xD800 + ((point - 0x10000) >> 10)));
        point = 0xDC00 + (point & 0x3FF);
    }
    units.push_back(static_cast<Text::value_type>(point));
}

} // namespace detail

/// Converts to UTF-8. A lone surrogate becomes three bytes, which utf16() converts back to the surrogate.
inline std::string utf8(TextView source)
{
    std::string bytes;
    while (!source.empty()) {
        detail::appendCodePoint(bytes, detail::takeCodePoint(source));
    }
    return bytes;
}

/// Converts a terminated string to UTF-8; null becomes the empty string.
inline std::string utf8(const wchar_t* source)
{
    return utf8(TextView(text(source)));
}

/// Converts from UTF-8. A byte that does not start a character becomes U+FFFD.
inline Text utf16(std::string_view source)
{
    Text units;
    while (!source.empty()) {
        detail::appendCodePoint(units, detail::takeCodePoint(source));
    }
    return units;
}

} // namespace rkuinfo
