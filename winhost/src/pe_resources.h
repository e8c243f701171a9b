// Finds strings in a PE file's string table. Safe for any file content.
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
    DWORD error; // ERROR_SUCCESS, or the error code if a part of the table is missing
    Bytes units; // UTF-16, little endian
};

bool isPeImage(Bytes file);

/// Finds the string with the given id. Strings are stored in blocks of 16. If the block exists in
/// several languages, uses the first. The string is empty if the block does not define it.
StringResource findString(Bytes file, std::uint16_t id);

} // namespace winhost
