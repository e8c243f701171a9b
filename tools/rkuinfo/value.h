// Typed values as words of a command line.
#pragma once

#include <RkUInfo.hpp>

#include <optional>
#include <string>
#include <string_view>

/// A number, the bytes in hexadecimal, or the text itself.
std::string dataText(const VelaVariant& value);

/// The value that the whole word is; nothing when it is none of that type.
std::optional<VelaVariant> parseValue(VelaVariant::VarType type, std::string_view word);

template <typename T>
std::optional<VelaVariant> variantOf(const std::optional<T>& value)
{
    std::optional<VelaVariant> result;
    if (value) {
        result = rkuinfo::variant(*value);
    }
    return result;
}

/// What a word must be to be a value of that type.
const char* expectation(VelaVariant::VarType type);
