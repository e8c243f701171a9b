#include "model/value.h"

#include "model/names.h"
#include "text/print.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace {

template <typename Number, typename... Base>
std::optional<Number> parseNumber(std::string_view word, Base... base)
{
    Number number{};
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number, base...);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

/// In decimal, or after 0x the bits in hexadecimal.
template <typename Number>
std::optional<Number> parseInteger(std::string_view word)
{
    if (word.starts_with("0x") || word.starts_with("0X")) {
        const auto bits = parseNumber<std::make_unsigned_t<Number>>(word.substr(2), 16);
        return bits ? std::optional(static_cast<Number>(*bits)) : std::nullopt;
    }
    return parseNumber<Number>(word);
}

template <typename Number>
std::optional<Value> valueOf(unsigned long type, const std::optional<Number>& number)
{
    return number ? std::optional(numberValue(type, *number)) : std::nullopt;
}

/// What a word must be to be a value of that type.
const char* expectation(std::string_view type)
{
    return type == "int"      ? "a whole number from -2147483648 to 2147483647, or 0x and hexadecimal digits"
           : type == "int64"  ? "a whole number from -9223372036854775808 to 9223372036854775807, or 0x and "
                                "hexadecimal digits"
           : type == "double" ? "a number such as 1.25"
                              : "one or more bytes in hexadecimal, such as 00ff10";
}

} // namespace

std::string_view typeName(const Value& value)
{
    switch (value.type) {
    case REG_SZ:
        return "string";
    case REG_BINARY:
        return "binary";
    case REG_DWORD:
        return value.data.size() <= sizeof(std::int32_t) ? "int" : "";
    case REG_QWORD:
        return value.data.size() <= sizeof(std::int64_t) ? "int64" : "";
    default:
        return "";
    }
}

std::string dataText(const Value& value)
{
    const std::string_view type = typeName(value);
    return type == "int"      ? std::to_string(numberOf<std::int32_t>(value))
           : type == "int64"  ? std::to_string(numberOf<std::int64_t>(value))
           : type == "string" ? utf8(textOf(value))
                              : hexText(value.data);
}

Text textOf(const Value& value)
{
    Text text((value.data.size() + 1) / sizeof(wchar_t), 0);
    value.data.copy(reinterpret_cast<char*>(text.data()), value.data.size());
    return text.substr(0, text.find(Text::value_type()));
}

std::optional<double> doubleOf(const Value& value)
{
    if (value.type != REG_BINARY || value.data.size() != sizeof(double)) {
        return std::nullopt;
    }
    double number = 0;
    value.data.copy(reinterpret_cast<char*>(&number), sizeof number);
    return number;
}

std::string hexText(std::string_view bytes)
{
    std::string out;
    for (const char each : bytes) {
        out += hexDigits(static_cast<unsigned char>(each), 2);
    }
    return out;
}

std::optional<std::string> bytesFromHex(std::string_view word)
{
    std::string bytes;
    for (; word.size() >= 2; word.remove_prefix(2)) {
        const auto number = parseNumber<std::uint8_t>(word.substr(0, 2), 16);
        if (!number) {
            return std::nullopt;
        }
        bytes += static_cast<char>(*number);
    }
    return word.empty() ? std::optional(bytes) : std::nullopt;
}

Value textValue(const Text& name, const Text& text)
{
    return {name, REG_SZ, std::string(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * 2)};
}

Value parseValue(const std::string& type, const std::string& word)
{
    std::optional<Value> value;
    if (type == "int") {
        value = valueOf(REG_DWORD, parseInteger<std::int32_t>(word));
    } else if (type == "int64") {
        value = valueOf(REG_QWORD, parseInteger<std::int64_t>(word));
    } else if (type == "double") {
        value = valueOf(REG_BINARY, parseNumber<double>(word));
    } else if (type == "string") {
        value = textValue({}, utf16(word));
    } else if (const auto bytes = bytesFromHex(word); bytes && !bytes->empty()) {
        value = Value{{}, REG_BINARY, *bytes};
    }
    if (!value) {
        throw Failure("'" + word + "' is no " + type + ": it takes " + expectation(type), exitUsage);
    }
    return *value;
}
