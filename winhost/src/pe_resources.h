// The string table of a PE file, read from its bytes as they are on disk. Any bytes are safe to give.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace winhost {

using Bytes = std::span<const unsigned char>;

inline Bytes asBytes(std::string_view text)
{
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

enum class StringLookup
{
    found,
    noResources,
    noStringTable,
    noBlock,
};

struct StringResource
{
    StringLookup result;
    Bytes units; // UTF-16, little endian
};

bool isPeImage(Bytes file);

/// The string with this number in the first language that has it. A number that its block of 16 leaves out is
/// an empty string.
StringResource findString(Bytes file, std::uint16_t id);

} // namespace winhost
