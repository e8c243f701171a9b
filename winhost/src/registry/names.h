// Names as they are stored, and the checksum of each record.
#pragma once

#include "text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace winhost::registry {

inline std::string_view bytesOf(TextView text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

inline Text textOf(std::string_view bytes)
{
    Text text(bytes.size() / sizeof(wchar_t), 0);
    bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t)); // may be null if empty
    return text;
}

/// Returns bytes that are equal for names that differ only in case, and that sort in the registry's order, in
/// which ASCII letters count as lower case and follow '_'.
inline std::string folded(TextView name)
{
    std::string bytes;
    bytes.reserve(name.size() * sizeof(wchar_t));
    for (const wchar_t each : name) {
        const wchar_t upper = each < 0x80 ? each : upcase(each);
        const unsigned unit = upper >= L'A' && upper <= L'Z' ? upper + (L'a' - L'A') : upper;
        bytes += static_cast<char>(unit >> 8);
        bytes += static_cast<char>(unit & 0xFF);
    }
    return bytes;
}

/// Returns a checksum that differs for any change within 8 bytes, and almost certainly for any other change.
inline std::uint64_t mix(std::uint64_t sum, std::uint64_t word)
{
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    sum = (sum ^ word) * odd;
    return sum ^ (sum >> 32);
}

inline std::uint64_t mix(std::uint64_t sum, std::string_view bytes)
{
    sum = mix(sum, bytes.size());
    for (std::size_t at = 0; at <= bytes.size(); at += sizeof sum) {
        std::uint64_t word = 0;
        bytes.copy(reinterpret_cast<char*>(&word), sizeof word, at);
        sum = mix(sum, word);
    }
    return sum;
}

} // namespace winhost::registry
