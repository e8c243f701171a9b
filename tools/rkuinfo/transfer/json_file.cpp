#include "transfer/transfer.h"

#include <algorithm>

namespace {

constexpr const char* unitsMember = "utf16";
constexpr int newestFormat = 1;

void require(bool holds, const char* why)
{
    if (!holds) {
        throw Failure(why);
    }
}

Text textFrom(const Json& json)
{
    Text text;
    if (json.is_object()) {
        const auto bytes = bytesFromHex(json.at(unitsMember).get<std::string>());
        require(bytes.has_value(), "not hexadecimal bytes");
        text = textOf({{}, REG_SZ, *bytes});
    } else {
        text = utf16(json.get<std::string>());
    }
    require(text.find(Text::value_type()) == Text::npos, "a string contains a null character");
    return text;
}

Value valueFrom(const Json& json)
{
    const Json& type = json.at("type");
    const Json& data = json.at("value");
    const ValueType* const known = type.is_string() ? typeNamed(type.get<std::string>()) : nullptr;
    require(known != nullptr || (type.is_number_unsigned() && type <= UINT32_MAX), "not a type");
    Value value = {textFrom(json.at("name")), REG_SZ, {}};
    require(value.name.size() <= longestValueName, "a value name may have at most 1023 characters");
    value.type = known != nullptr ? known->registryType : type.get<std::uint32_t>();
    std::optional<std::string> bytes;
    if (known != nullptr && value.type == REG_SZ) {
        bytes = textValue({}, textFrom(data)).data;
    } else if (data.is_number() == (known != nullptr && known->isJsonNumber)) {
        const std::string word = data.is_number() ? data.dump() : data.get<std::string>();
        bytes = known == nullptr || word.empty() ? bytesFromHex(word) : known->parse(word);
    }
    require(bytes.has_value(), "the value does not match its type");
    value.data = *bytes;
    return value;
}

/// Reads a key and everything below it. Sets `place` to the current position, for messages.
void readKey(const Json& json, const Text& root, const Text& path, std::vector<Edit>& edits,
             std::string& place)
{
    const std::string key = path.empty() ? "the key itself" : "key " + utf8(path);
    place = key;
    require(isUsablePath(joinedKey(root, path)), "a path may have at most 1020 characters, a key name 255");
    require(json.at("values").is_array() && json.at("keys").is_array(), "values and keys must be arrays");
    edits.push_back({{path}});
    std::size_t number = 0;
    for (const Json& each : json.at("values")) {
        place = key + ", value " + std::to_string(++number);
        const Value value = valueFrom(each);
        edits.push_back({{path, value.name}, value});
    }
    for (const Json& each : json.at("keys")) {
        place = key + ", keys";
        const Text name = textFrom(each.at("name"));
        require(!name.empty() && name.find(separator) == Text::npos, "not a valid key name");
        readKey(each, root, joinedKey(path, name), edits, place);
    }
}

/// Appends the members of the key that the iterator `at` points to, and advances the iterator past everything
/// below that key.
void appendKey(Json& json, Tree::const_iterator& at, const Tree::const_iterator& end)
{
    const Text path = at->first.key;
    Json values = Json::array();
    Json keys = Json::array();
    for (++at; at != end && !at->first.isKey(); ++at) {
        values.push_back(toNamedJson(at->second));
    }
    while (at != end && equalIgnoringCase(parentKey(at->first.key), path)) {
        keys.push_back({{"name", toJson(lastName(at->first.key))}});
        appendKey(keys.back(), at, end);
    }
    json["values"] = std::move(values);
    json["keys"] = std::move(keys);
}

} // namespace

Json toJson(TextView text)
{
    if (isValid(text)) {
        return utf8(text);
    }
    return {{unitsMember, hexText(textValue({}, Text(text)).data)}};
}

Json toJson(const Value& value)
{
    const ValueType* const type = typeOf(value);
    const Json data = value.type == REG_SZ                    ? toJson(textOf(value))
                      : type != nullptr && type->isJsonNumber ? Json::parse(type->print(value))
                                                              : Json(dataText(value));
    return {{"type", type == nullptr ? Json(value.type) : Json(type->name)}, {"value", data}};
}

Json toNamedJson(const Value& value)
{
    Json json = {{"name", toJson(value.name)}};
    json.update(toJson(value));
    return json;
}

Json toJson(const Tree& tree, Json header)
{
    auto at = tree.begin();
    appendKey(header, at, tree.end());
    return header;
}

std::string documentText(const Json& json)
{
    return shown(json.dump(2), '\n');
}

std::vector<Edit> fromJsonFile(const std::string& file, const std::string& bytes, const Text& root)
{
    std::vector<Edit> edits;
    std::string place = "the document";
    try {
        const Json json = Json::parse(bytes);
        const auto format = json.find("format");
        require(format == json.end() || format->get<double>() <= newestFormat,
                "the file was written by a newer version of rkuinfo");
        readKey(json, root, {}, edits, place);
    } catch (const Json::exception& error) {
        const std::string what = error.what(); // begins with the parser's error code in brackets
        throw Failure(file + ": " + place + ": " + what.substr(what.find(']') + 2));
    } catch (const Failure& failure) {
        throw Failure(file + ": " + place + ": " + failure.what());
    }
    return edits;
}
