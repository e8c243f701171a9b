#include "value.h"

#include "text.h"

#include <charconv>
#include <cstdint>
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

std::optional<rkuinfo::Bytes> parseHex(std::string_view word)
{
    rkuinfo::Bytes bytes;
    for (; word.size() >= 2; word.remove_prefix(2)) {
        const auto byte = parseNumber<std::uint8_t>(word.substr(0, 2), 16);
        if (!byte) {
            return std::nullopt;
        }
        bytes.push_back(std::byte(*byte));
    }
    return word.empty() && !bytes.empty() ? std::optional(bytes) : std::nullopt;
}

std::string hex(const VelaVariant& value)
{
    std::string out;
    for (const std::byte byte : rkuinfo::as<rkuinfo::Bytes>(value).value_or(rkuinfo::Bytes())) {
        out += hexDigits(static_cast<unsigned>(byte), 2);
    }
    return out;
}

} // namespace

std::string dataText(const VelaVariant& value)
{
    switch (value.type()) {
    case VelaVariant::eNull:
    case VelaVariant::eDouble: // comes back as binary
        break;
    case VelaVariant::eInt:
        return std::to_string(value.getInt());
    case VelaVariant::eInt64:
        return std::to_string(value.getInt64());
    case VelaVariant::eBinary:
        return hex(value);
    case VelaVariant::eString:
        return utf8(rkuinfo::text(value.getString()));
    }
    return {};
}

std::optional<VelaVariant> parseValue(VelaVariant::VarType type, std::string_view word)
{
    switch (type) {
    case VelaVariant::eNull:
        break;
    case VelaVariant::eInt:
        return variantOf(parseNumber<std::int32_t>(word));
    case VelaVariant::eInt64:
        return variantOf(parseNumber<std::int64_t>(word));
    case VelaVariant::eDouble:
        return variantOf(parseNumber<double>(word));
    case VelaVariant::eBinary:
        return variantOf(parseHex(word));
    case VelaVariant::eString:
        return rkuinfo::variant(utf16(word));
    }
    return std::nullopt;
}

const char* expectation(VelaVariant::VarType type)
{
    switch (type) {
    case VelaVariant::eInt:
        return "a whole number from -2147483648 to 2147483647";
    case VelaVariant::eInt64:
        return "a whole number from -9223372036854775808 to 9223372036854775807";
    case VelaVariant::eDouble:
        return "a number such as 1.25";
    case VelaVariant::eBinary:
        return "one or more bytes in hexadecimal, such as 00ff10";
    case VelaVariant::eNull:
    case VelaVariant::eString:
        break;
    }
    return ""; // every word is a text
}
