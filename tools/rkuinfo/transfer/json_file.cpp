#include "transfer/transfer.h"

#include <algorithm>
#include <set>

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
        for (const Json& unit : json.at(unitsMember)) {
            text += static_cast<Text::value_type>(unit.get<std::uint16_t>());
            require(unit == static_cast<std::uint16_t>(text.back()), "not a UTF-16 code unit");
        }
    } else {
        text = utf16(json.get<std::string>());
    }
    require(text.find(Text::value_type()) == Text::npos, "a text has a null character");
    return text;
}

Value valueFrom(const Json& json)
{
    const Json& type = json.at("type");
    const Json& data = json.at("value");
    Value value = {textFrom(json.at("name")), REG_SZ, {}};
    require(value.name.size() <= longestValueName, "the name of a value has at most 1023 characters");
    std::optional<std::string> bytes;
    if (type.is_number()) {
        value.type = type.get<std::uint32_t>();
        bytes = bytesFromHex(data.get<std::string>());
    } else {
        const ValueType* const known = typeNamed(type.get<std::string>());
        require(known != nullptr, "not a type");
        value.type = known->registryType;
        if (value.type == REG_SZ) {
            bytes = textValue({}, textFrom(data)).data;
        } else if (known->isJsonNumber == data.is_number()) {
            const std::string word = data.is_number() ? data.dump() : data.get<std::string>();
            bytes = word.empty() ? word : known->parse(word);
        }
    }
    require(bytes.has_value(), "not a value of its type");
    value.data = *bytes;
    return value;
}

struct Pending
{
    const Json* json;
    Text path;
};

/// Reads a key, and appends those below it to what is still to be read.
void readKey(const Text& root, const Pending& key, std::vector<Pending>& pending,
             std::set<Name, LessName>& names, std::vector<Edit>& edits, std::string& place)
{
    require(isUsablePath(joinedKey(root, key.path)),
            "a path has at most 1020 characters, the name of a key 255");
    require(names.insert({key.path, std::nullopt}).second, "the key occurs twice");
    edits.push_back({{key.path, std::nullopt}, {}});
    const std::string keyPlace = place;
    std::size_t number = 0;
    for (const Json& json : key.json->at("values")) {
        place = keyPlace + ", value " + std::to_string(++number);
        Value value = valueFrom(json);
        require(names.insert({key.path, value.name}).second, "a value occurs twice");
        edits.push_back({{key.path, value.name}, std::move(value)});
    }
    place = keyPlace + ", keys";
    const Json& keys = key.json->at("keys");
    require(keys.is_array() && key.json->at("values").is_array(), "not arrays");
    for (auto each = keys.rbegin(); each != keys.rend(); ++each) { // the first is read next
        const Text name = textFrom(each->at("name"));
        require(!name.empty() && name.find(separator) == Text::npos, "not the name of a key");
        pending.push_back({&*each, joinedKey(key.path, name)});
    }
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
    std::vector<Json> open; // the keys from the tree's own to the last one, whose keys are not complete
    const auto closeTo = [&open](std::size_t depth) {
        while (open.size() > depth) {
            Json key = std::move(open.back());
            open.pop_back();
            open.back()["keys"].push_back(std::move(key));
        }
    };
    for (const auto& [name, value] : tree) {
        if (!name.isKey()) {
            open.back()["values"].push_back(toNamedJson(value));
            continue;
        }
        closeTo(name.key.empty() ? 0 : static_cast<std::size_t>(std::ranges::count(name.key, separator)) + 1);
        open.push_back(name.key.empty() ? std::move(header) : Json{{"name", toJson(lastName(name.key))}});
        open.back()["values"] = Json::array();
        open.back()["keys"] = Json::array();
    }
    closeTo(1);
    return std::move(open.front());
}

std::string documentText(const Json& json)
{
    return shown(json.dump(2), '\n');
}

std::vector<Edit> fromJsonFile(const std::string& file, const std::string& bytes, const Text& root)
{
    std::vector<Edit> edits;
    std::set<Name, LessName> names;
    std::string place = "the document";
    try {
        const Json json = Json::parse(bytes);
        require(json.value("format", newestFormat) <= newestFormat,
                "the file is of a newer version of rkuinfo");
        std::vector<Pending> pending = {{&json, {}}};
        while (!pending.empty()) {
            const Pending next = std::move(pending.back());
            pending.pop_back();
            place = next.path.empty() ? "the key itself" : "key " + utf8(next.path);
            readKey(root, next, pending, names, edits, place);
        }
    } catch (const Json::exception& error) {
        const std::string what = error.what(); // "[the parser's name for it] ..."
        throw Failure(file + ": " + place + ": " + what.substr(what.find(']') + 2));
    } catch (const Failure& failure) {
        throw Failure(file + ": " + place + ": " + failure.what());
    }
    return edits;
}
