// Values, and the one table of their types. Applications read four registry types.
#pragma once

#include "model/registry.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// A type of value: what set accepts, get prints, search finds and JSON contains.
struct ValueType
{
    std::string_view name;
    unsigned long registryType;
    std::size_t least; ///< bytes, and the most, that an application reads as it
    std::size_t most;
    bool isJsonNumber;     ///< in JSON a number, otherwise a string
    std::string_view word; ///< what a word has to be
    std::optional<std::string> (*parse)(
        std::string_view word); ///< returns the data; nothing for a wrong word
    std::string (*print)(const Value& value);

    /// Whether the stored value can be printed as this type.
    bool fits(const Value& value) const;
};

std::span<const ValueType> valueTypes();
std::vector<std::string> typeNames();
/// Null when there is no such type.
const ValueType* typeNamed(std::string_view name);
/// The type that an application reads the value as; null when it cannot.
const ValueType* typeOf(const Value& value);

/// A number, the bytes in hexadecimal, or the text; of a value that applications cannot read, its bytes.
std::string dataText(const Value& value);
/// The text of a REG_SZ, up to its first null character.
Text textOf(const Value& value);
std::string hexText(std::string_view bytes);
std::optional<std::string> bytesFromHex(std::string_view word);
Value textValue(const Text& name, const Text& text);

template <typename Number>
Number numberOf(const Value& value)
{
    Number number = 0;
    value.data.copy(reinterpret_cast<char*>(&number), sizeof number);
    return number;
}

template <typename Number>
std::string bytesOf(Number number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}
