// Values as words of a command line. Applications read four registry types, each as a type of the library.
#pragma once

#include "model/registry.h"

#include <optional>
#include <string>
#include <string_view>

/// "int", "int64", "binary" or "string"; empty for what applications cannot read.
std::string_view typeName(const Value& value);
/// A number, the bytes in hexadecimal, or the text itself.
std::string dataText(const Value& value);
/// The text of a REG_SZ, up to its first null character.
Text textOf(const Value& value);
template <typename Number>
Number numberOf(const Value& value)
{
    Number number = 0;
    value.data.copy(reinterpret_cast<char*>(&number), sizeof number);
    return number;
}
/// What eight bytes are as a double, as applications store one.
std::optional<double> doubleOf(const Value& value);
std::string hexText(std::string_view bytes);
std::optional<std::string> bytesFromHex(std::string_view word);

Value textValue(const Text& name, const Text& text);
template <typename Number>
Value numberValue(unsigned long type, Number number)
{
    return {{}, type, std::string(reinterpret_cast<const char*>(&number), sizeof number)};
}

/// The value that the whole word is, without a name; throws when it is none of that type, one of typeNames().
Value parseValue(const std::string& type, const std::string& word);
