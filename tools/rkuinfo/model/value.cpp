#include "model/registry.h"

#include <algorithm>
#include <charconv>
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

/// Parses a decimal number. An integer may also be a hexadecimal bit pattern that begins with 0x.
template <typename Number>
std::optional<std::string> parse(std::string_view word)
{
    if constexpr (std::is_integral_v<Number>) {
        if (word.starts_with("0x") || word.starts_with("0X")) {
            const auto bits = parseNumber<std::make_unsigned_t<Number>>(word.substr(2), 16);
            return bits ? std::optional(bytesOf(*bits)) : std::nullopt;
        }
    }
    const std::optional<Number> number = parseNumber<Number>(word);
    return number ? std::optional(bytesOf(*number)) : std::nullopt;
}

template <typename Number>
std::string numberText(const Value& value)
{
    Number number = 0;
    value.data.copy(reinterpret_cast<char*>(&number), sizeof number);
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::optional<std::string> parseBinary(std::string_view word)
{
    return word.empty() ? std::nullopt : bytesFromHex(word); // applications cannot store empty data
}

} // namespace

// An application reads a stored value as the first type in this table that fits the value.
const std::vector<ValueType> valueTypes = {
    {"int", REG_DWORD, 0, 4, true, "a 32-bit integer, such as -7 or 0x204060", parse<std::int32_t>,
     numberText<std::int32_t>},
    {"int64", REG_QWORD, 0, 8, true, "a 64-bit integer, such as -7 or 0x204060", parse<std::int64_t>,
     numberText<std::int64_t>},
    {"binary", REG_BINARY, 0, SIZE_MAX, false, "one or more hexadecimal bytes, such as 00ff10", parseBinary,
     [](const Value& value) { return hexText(value.data); }},
    {"double", REG_BINARY, 8, 8, true, "a number such as 1.25", parse<double>, numberText<double>},
    {"string", REG_SZ, 0, SIZE_MAX, false, "text",
     [](std::string_view word) { return std::optional(textValue({}, utf16(word)).data); },
     [](const Value& value) { return utf8(textOf(value)); }},
};

bool ValueType::fits(const Value& value) const
{
    return value.type == registryType && value.data.size() >= least && value.data.size() <= most;
}

const ValueType* typeNamed(std::string_view name)
{
    const auto found = std::ranges::find(valueTypes, name, &ValueType::name);
    return found == valueTypes.end() ? nullptr : &*found;
}

const ValueType* typeOf(const Value& value)
{
    const auto found =
        std::ranges::find_if(valueTypes, [&](const ValueType& type) { return type.fits(value); });
    return found == valueTypes.end() ? nullptr : &*found;
}

std::string dataText(const Value& value)
{
    const ValueType* const type = typeOf(value);
    return type != nullptr ? type->print(value) : hexText(value.data);
}

Text textOf(const Value& value)
{
    Text text((value.data.size() + 1) / sizeof(wchar_t), 0);
    value.data.copy(reinterpret_cast<char*>(text.data()), value.data.size());
    return text.substr(0, text.find(Text::value_type()));
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
