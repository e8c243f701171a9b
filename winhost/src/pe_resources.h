// The string table of a PE file, parsed from its bytes as on disk. Any bytes are safe to parse.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace winhost {

using Bytes = std::span<const unsigned char>;

inline Bytes asBytes(std::string_view text)
{
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

struct StringResource
{
    DWORD error; // ERROR_SUCCESS, or the code for the missing part
    Bytes units; // UTF-16, little endian
};

bool isPeImage(Bytes file);

/// Finds the string with the given id. Strings are stored in blocks of 16; uses the first language that has
/// the string's block. The string is empty if the block does not define it.
StringResource findString(Bytes file, std::uint16_t id);

} // namespace winhost
