#include "json.h"

#include "names.h"
#include "session.h"
#include "value.h"

#include <cstdint>
#include <limits>

namespace {

constexpr const char* unitsMember = "utf16";

/// The number, if it fits a type.
template <typename Number>
std::optional<Number> numberFrom(const Json& json)
{
    if (!json.is_number_integer()) {
        return std::nullopt;
    }
    if (json.is_number_unsigned() &&
        json.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<Number>::max())) {
        return std::nullopt;
    }
    const auto number = json.get<std::int64_t>();
    if (number < std::numeric_limits<Number>::min() || number > std::numeric_limits<Number>::max()) {
        return std::nullopt;
    }
    return static_cast<Number>(number);
}

std::optional<Text> textFromUnits(const Json& units)
{
    Text out;
    for (const Json& unit : units) {
        const auto number = numberFrom<std::int32_t>(unit);
        if (!number || *number < 0 || *number > 0xFFFF) {
            return std::nullopt;
        }
        out += static_cast<Text::value_type>(*number);
    }
    return out;
}

} // namespace

Json toJson(TextView text)
{
    if (isValid(text)) {
        return utf8(text);
    }
    Json units = Json::array();
    for (const auto unit : text) {
        units.push_back(static_cast<std::uint16_t>(unit));
    }
    return {{unitsMember, units}};
}

std::optional<Text> textFrom(const Json& json)
{
    std::optional<Text> text;
    if (json.is_string()) {
        text = utf16(json.get<std::string>());
    } else if (json.is_object() && json.size() == 1 && json.contains(unitsMember) &&
               json[unitsMember].is_array()) {
        text = textFromUnits(json[unitsMember]);
    }
    return text && text->find(Text::value_type()) == Text::npos ? text : std::nullopt;
}

Json toJson(const VelaVariant& value)
{
    Json data;
    switch (value.type()) {
    case VelaVariant::eInt:
        data = value.getInt();
        break;
    case VelaVariant::eInt64:
        data = value.getInt64();
        break;
    case VelaVariant::eString:
        data = toJson(rkuinfo::text(value.getString()));
        break;
    case VelaVariant::eNull:
    case VelaVariant::eDouble: // comes back as binary
    case VelaVariant::eBinary:
        data = dataText(value);
        break;
    }
    return {{"type", typeName(value.type())}, {"value", data}};
}

std::optional<VelaVariant> valueFrom(const Json& json)
{
    if (!json.contains("type") || !json["type"].is_string() || !json.contains("value")) {
        return std::nullopt;
    }
    const Json& data = json["value"];
    switch (typeOf(json["type"].get<std::string>())) {
    case VelaVariant::eNull:
        break;
    case VelaVariant::eInt:
        return variantOf(numberFrom<std::int32_t>(data));
    case VelaVariant::eInt64:
        return variantOf(numberFrom<std::int64_t>(data));
    case VelaVariant::eDouble:
        return variantOf(data.is_number() ? std::optional(data.get<double>()) : std::nullopt);
    case VelaVariant::eBinary:
        return data.is_string() ? parseValue(VelaVariant::eBinary, data.get<std::string>()) : std::nullopt;
    case VelaVariant::eString:
        return variantOf(textFrom(data));
    }
    return std::nullopt;
}

void printJson(const Json& json)
{
    print(json.dump(2));
}
