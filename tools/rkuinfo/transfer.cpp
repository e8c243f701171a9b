// rkuinfo export and import.
#include "commands.h"

#include "installation.h"
#include "json.h"
#include "text.h"

#include <RkUInfo.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <type_traits>
#include <vector>

namespace {

using rkuinfo::Argument;

std::string shownKey(const Text& key)
{
    return key.empty() ? "the top key" : shown(key);
}

std::filesystem::path filePath(const std::string& name)
{
    if constexpr (std::is_same_v<Text, std::filesystem::path::string_type>) {
        return utf16(name); // by no conversion, which would throw at a lone surrogate
    }
    return name;
}

// ---- Export

class Exporter
{
public:
    Exporter(Session& session, TarvoConfig::Path path) : m_session(session), m_path(path) {}

    Json exportKey(const Text& key)
    {
        Json json = {{"values", Json::array()}, {"keys", Json::array()}};
        const Argument argument(key);
        auto values = rkuinfo::values(m_path, argument);
        if (values.error()) {
            skip(key, "the key", values.error().message());
            return json;
        }
        for (const rkuinfo::Value& value : values) {
            addValue(key, value, json["values"]);
        }
        for (const Text& name : rkuinfo::items(m_path, argument)) {
            if (name.find(Text::value_type('/')) != Text::npos) {
                skip(joinedKey(key, name), "the key", "no path leads to a name with a slash");
                continue;
            }
            Json child = {{"name", toJson(name)}};
            child.update(exportKey(joinedKey(key, name)));
            json["keys"].push_back(std::move(child));
        }
        return json;
    }

private:
    void addValue(const Text& key, const rkuinfo::Value& value, Json& out)
    {
        const std::string what = "value '" + shown(value.name) + '\'';
        if (value.error) {
            skip(key, what, value.error.message());
        } else if (value.data.type() == VelaVariant::eBinary && value.data.getBinary() == nullptr) {
            skip(key, what, "binary values without bytes cannot be written");
        } else {
            Json json = {{"name", toJson(value.name)}};
            json.update(toJson(value.data));
            out.push_back(std::move(json));
        }
    }

    void skip(const Text& key, const std::string& what, const std::string& why)
    {
        complain(m_session, "left out " + what + " of " + shownKey(key) + ": " + why);
    }

    Session& m_session;
    TarvoConfig::Path m_path;
};

} // namespace

void exportTree(Session& session, const Arguments& arguments)
{
    startUp(session);
    const TarvoConfig::Path path = arguments.path();
    const Text key = utf16(arguments.key);
    require(static_cast<TarvoConfig::Error>(rkuinfo::values(path, key).error().value()), arguments.target());
    const Json json = Exporter(session, path).exportKey(key);
    if (arguments.file.empty()) {
        printJson(json);
        return;
    }
    std::ofstream out(filePath(arguments.file), std::ios::binary);
    out << json.dump(2) << '\n';
    if (!out.flush()) {
        throw Failure(arguments.file + " cannot be written");
    }
}

namespace {

// ---- Import

/// One write: of a key, or of a value in it.
struct Write
{
    struct Named
    {
        Text name;
        VelaVariant data;
    };

    Text key;
    std::optional<Named> value;
};

/// Turns a file into the writes that it asks for; throws at the first thing that could not be written.
class Reader
{
public:
    /// roomForKeys: the characters that a key path may have below the subtree's own.
    Reader(std::string file, std::size_t roomForKeys) : m_file(std::move(file)), m_room(roomForKeys) {}

    void readKey(const Text& key, const Json& json, bool isNamed)
    {
        if (key.size() > m_room) {
            refuse(key, "its path is too long");
        }
        const std::size_t members = isNamed ? 3 : 2;
        if (!json.is_object() || json.size() != members || !isArray(json, "values") ||
            !isArray(json, "keys")) {
            refuse(key, "it is no object of \"values\" and \"keys\"");
        }
        m_writes.push_back({key, std::nullopt});
        for (const Json& value : json["values"]) {
            readValue(key, value);
        }
        for (const Json& child : json["keys"]) {
            readKey(joinedKey(key, keyName(key, child)), child, true);
        }
    }

    const std::vector<Write>& writes() const { return m_writes; }

private:
    static bool isArray(const Json& json, const char* member)
    {
        return json.contains(member) && json[member].is_array();
    }

    [[noreturn]] void refuse(const Text& key, const std::string& why) const
    {
        throw Failure(m_file + ": " + shownKey(key) + ": " + why);
    }

    /// The member "name" of a key or value; only a key needs one that is not empty.
    std::optional<Text> name(const Json& json, std::size_t longest) const
    {
        const std::optional<Text> text =
            json.is_object() && json.contains("name") ? textFrom(json["name"]) : std::nullopt;
        return text && text->size() <= longest ? text : std::nullopt;
    }

    Text keyName(const Text& parent, const Json& json) const
    {
        constexpr std::size_t longest = 255;
        const std::optional<Text> found = name(json, longest);
        if (!found || found->empty() || found->find_first_of(utf16("/\\")) != Text::npos) {
            refuse(parent, "a key below it has no usable name");
        }
        return *found;
    }

    void readValue(const Text& key, const Json& json)
    {
        constexpr std::size_t longest = 1023;
        const std::optional<Text> found = name(json, longest);
        if (!found) {
            refuse(key, "a value has no usable name");
        }
        const std::optional<VelaVariant> data = valueFrom(json);
        if (!data || json.size() != 3) {
            refuse(key, "value '" + shown(*found) + "' has no usable type and value");
        }
        m_writes.push_back({key, Write::Named{*found, *data}});
    }

    std::string m_file;
    std::size_t m_room;
    std::vector<Write> m_writes;
};

Json parse(std::istream& in, const std::string& file)
{
    if (!in) {
        throw Failure(file + " cannot be read");
    }
    try {
        return Json::parse(in);
    } catch (const std::ios_base::failure&) { // such as of a folder
        throw Failure(file + " cannot be read");
    } catch (const Json::exception& error) {
        const std::string what = error.what(); // "[the parser's name for it] parse error at line ..."
        throw Failure(file + " is no JSON: " + what.substr(what.find(']') + 2));
    }
}

Json readFile(const std::string& file)
{
    if (file.empty()) {
        return parse(std::cin, "standard input");
    }
    std::ifstream in(filePath(file), std::ios::binary);
    return parse(in, file);
}

/// Without separators at its ends, as the library takes it.
Text trimmed(const Text& key)
{
    const Text separators = utf16("/\\");
    const std::size_t start = key.find_first_not_of(separators);
    return start == Text::npos ? Text() : key.substr(start, key.find_last_not_of(separators) - start + 1);
}

} // namespace

void importTree(Session& session, const Arguments& arguments)
{
    const Json json = readFile(arguments.file);
    startUp(session);
    constexpr std::size_t longestPath = 1021; // the subtree's own and what is below it, but for the separator
    const TarvoConfig::Path path = arguments.path();
    wchar_t root[1024];
    velaConfig()->getRegRootPath(path, root);
    const std::size_t rootLength = rkuinfo::text(root).size();
    if (rootLength == 0) {
        throw Failure(arguments.target() + ": not found");
    }
    Reader reader(arguments.file.empty() ? "standard input" : arguments.file, longestPath - rootLength);
    reader.readKey(trimmed(utf16(arguments.key)), json, false);
    for (const Write& write : reader.writes()) {
        const Argument key(write.key);
        require(write.value
                    ? velaConfig()->addValue(path, key, Argument(write.value->name), write.value->data)
                    : velaConfig()->addItem(path, key),
                shownKey(write.key));
    }
}
