#include "transfer/json_file.h"

#include "text/print.h"

#include <cstdint>
#include <limits>
#include <set>

namespace {

constexpr const char* unitsMember = "utf16";

/// The number, if it fits a type.
template <typename Number>
std::optional<Number> numberFrom(const Json& json)
{
    if (!json.is_number_integer() ||
        (json.is_number_unsigned() &&
         json.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<Number>::max()))) {
        return std::nullopt;
    }
    const auto number = json.get<std::int64_t>();
    if (number < std::numeric_limits<Number>::min() || number > std::numeric_limits<Number>::max()) {
        return std::nullopt;
    }
    return static_cast<Number>(number);
}

std::optional<Text> textFrom(const Json& json)
{
    std::optional<Text> text;
    if (json.is_string()) {
        text = utf16(json.get<std::string>());
    } else if (json.is_object() && json.size() == 1 && json.contains(unitsMember) &&
               json[unitsMember].is_array()) {
        text.emplace();
        for (const Json& unit : json[unitsMember]) {
            const auto number = numberFrom<std::int32_t>(unit);
            if (!number || *number < 0 || *number > 0xFFFF) {
                return std::nullopt;
            }
            *text += static_cast<Text::value_type>(*number);
        }
    }
    return text && text->find(Text::value_type()) == Text::npos ? text : std::nullopt;
}

template <typename Number>
std::optional<Value> valueOf(unsigned long type, const std::optional<Number>& number)
{
    return number ? std::optional(numberValue(type, *number)) : std::nullopt;
}

std::optional<Value> bytesFrom(unsigned long type, const Json& json)
{
    const auto bytes = json.is_string() ? bytesFromHex(json.get<std::string>()) : std::nullopt;
    return bytes ? std::optional(Value{{}, type, *bytes}) : std::nullopt;
}

std::optional<Value> dataFrom(const Json& type, const Json& data)
{
    if (const auto number = numberFrom<std::int32_t>(type)) {
        return *number < 0 ? std::nullopt : bytesFrom(static_cast<unsigned long>(*number), data);
    }
    if (type == "int") {
        return valueOf(REG_DWORD, numberFrom<std::int32_t>(data));
    }
    if (type == "int64") {
        return valueOf(REG_QWORD, numberFrom<std::int64_t>(data));
    }
    if (type == "double") {
        return valueOf(REG_BINARY, data.is_number() ? std::optional(data.get<double>()) : std::nullopt);
    }
    if (type == "binary") {
        return bytesFrom(REG_BINARY, data);
    }
    const std::optional<Text> text = type == "string" ? textFrom(data) : std::nullopt;
    return text ? std::optional(textValue({}, *text)) : std::nullopt;
}

class Reader
{
public:
    explicit Reader(const std::string& file) : m_file(file) {}

    /// depth keys below the one that is imported into, which alone has no name.
    Node readKey(const Json& json, const std::string& place, std::size_t depth) const
    {
        const std::size_t members = depth > 0 ? 3 : 2;
        if (!json.is_object() || json.size() != members || !isArray(json, "values") ||
            !isArray(json, "keys")) {
            refuse(place, "it is no object of \"values\" and \"keys\"");
        }
        if (depth > deepestKey) {
            refuse(place, "the keys are nested too deeply");
        }
        Node node;
        for (std::size_t i = 0; i < json["values"].size(); ++i) {
            node.values.push_back(readValue(json["values"][i], place + "/values/" + std::to_string(i)));
        }
        for (std::size_t i = 0; i < json["keys"].size(); ++i) {
            const Json& key = json["keys"][i];
            const std::string below = place + "/keys/" + std::to_string(i);
            constexpr std::size_t longest = 255;
            const std::optional<Text> name = nameIn(key, longest);
            if (!name || name->empty() || name->find(Text::value_type('\\')) != Text::npos) {
                refuse(below + "/name", "no usable name of a key");
            }
            node.keys.push_back(readKey(key, below, depth + 1));
            node.keys.back().name = *name;
        }
        refuseRepeated(node.values, place + "/values/");
        refuseRepeated(node.keys, place + "/keys/");
        return node;
    }

private:
    static bool isArray(const Json& json, const char* member)
    {
        return json.contains(member) && json[member].is_array();
    }

    /// Which of two counts would be a guess.
    template <typename Named>
    void refuseRepeated(const std::vector<Named>& all, const std::string& place) const
    {
        std::set<Text, LessIgnoringCase> names;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (!names.insert(all[i].name).second) {
                refuse(place + std::to_string(i) + "/name", "the name is there twice");
            }
        }
    }

    [[noreturn]] void refuse(const std::string& place, const std::string& why) const
    {
        throw Failure(m_file + ": " + (place.empty() ? "the whole" : place) + ": " + why);
    }

    static std::optional<Text> nameIn(const Json& json, std::size_t longest)
    {
        const std::optional<Text> text =
            json.is_object() && json.contains("name") ? textFrom(json["name"]) : std::nullopt;
        return text && text->size() <= longest ? text : std::nullopt;
    }

    Value readValue(const Json& json, const std::string& place) const
    {
        constexpr std::size_t longest = 1023;
        const std::optional<Text> name = nameIn(json, longest);
        if (!name) {
            refuse(place + "/name", "no usable name of a value");
        }
        if (json.size() != 3 || !json.contains("type") || !json.contains("value")) {
            refuse(place, "it is no object of \"name\", \"type\" and \"value\"");
        }
        std::optional<Value> value = dataFrom(json["type"], json["value"]);
        if (!value) {
            refuse(place + "/value", "no usable value of its type");
        }
        value->name = *name;
        return *value;
    }

    const std::string& m_file;
};

Json describe(const Node& node)
{
    Json json = {{"values", Json::array()}, {"keys", Json::array()}};
    for (const Value& value : node.values) {
        json["values"].push_back(toNamedJson(value));
    }
    for (const Node& key : node.keys) {
        Json child = {{"name", toJson(key.name)}};
        child.update(describe(key));
        json["keys"].push_back(std::move(child));
    }
    return json;
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

Json toJson(const Value& value)
{
    const std::string_view type = typeName(value);
    const Json data = type == "int"      ? Json(numberOf<std::int32_t>(value))
                      : type == "int64"  ? Json(numberOf<std::int64_t>(value))
                      : type == "string" ? toJson(textOf(value))
                                         : Json(hexText(value.data));
    return {{"type", type.empty() ? Json(value.type) : Json(type)}, {"value", data}};
}

Json toNamedJson(const Value& value)
{
    Json json = {{"name", toJson(value.name)}};
    json.update(toJson(value));
    return json;
}

std::string toJsonFile(const Node& node)
{
    return describe(node).dump(2) + '\n';
}

Node fromJsonFile(const std::string& file, const std::string& bytes)
{
    try {
        return Reader(file).readKey(Json::parse(bytes), "", 0);
    } catch (const Json::exception& error) {
        const std::string what = error.what(); // "[the parser's name for it] parse error at line ..."
        throw Failure(file + " is no JSON: " + what.substr(what.find(']') + 2));
    }
}

void printJson(const Json& json)
{
    print(json.dump(2));
}
