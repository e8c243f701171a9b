// rkuinfo get, set, list, tree and rm.
#include "commands.h"

#include "installation.h"
#include "json.h"
#include "table.h"
#include "text.h"
#include "value.h"

#include <RkUInfo.hpp>

#include <algorithm>
#include <optional>

using rkuinfo::Argument;

// ---- get and set

void get(Session& session, const Arguments& arguments)
{
    startUp(session);
    VelaVariant value;
    require(velaConfig()->getValue(arguments.path(), Argument(utf16(arguments.key)), value),
            arguments.target());
    if (session.json) {
        printJson(toJson(value));
    } else {
        print(dataText(value));
    }
}

void set(Session& session, const Arguments& arguments)
{
    const VelaVariant::VarType type = typeOf(arguments.type);
    const std::optional<VelaVariant> value = parseValue(type, arguments.data);
    if (!value) {
        throw Failure("'" + arguments.data + "' is no " + arguments.type + ": it takes " + expectation(type),
                      exitUsage);
    }
    startUp(session);
    require(velaConfig()->setValue(arguments.path(), Argument(utf16(arguments.key)), *value),
            arguments.target());
}

namespace {

// ---- list and tree

/// Whether its name is too long for anyone to get.
bool isNameless(const rkuinfo::Value& value)
{
    return value.error == TarvoConfig::eBufferTooSmall;
}

std::string shownName(const rkuinfo::Value& value)
{
    if (isNameless(value)) {
        return "(name too long)";
    }
    return value.name.empty() ? "(default)" : shown(value.name);
}

/// The cells behind a value's name.
std::vector<Cell> dataCells(const rkuinfo::Value& value)
{
    if (value.error) {
        return {{"?", Style::bad}, {value.error.message(), Style::bad}};
    }
    const std::string data =
        value.data.type() == VelaVariant::eString ? shown(*value.as<Text>()) : dataText(value.data);
    return {{std::string(typeName(value.data.type())), Style::quiet}, {data}};
}

Json describe(const rkuinfo::Value& value)
{
    Json json = {{"name", toJson(value.name)}};
    json.update(value.error ? Json({{"error", value.error.message()}}) : toJson(value.data));
    return json;
}

} // namespace

void list(Session& session, const Arguments& arguments)
{
    startUp(session);
    const TarvoConfig::Path path = arguments.path();
    const Argument key(utf16(arguments.key));
    auto keys = rkuinfo::items(path, key);
    auto values = rkuinfo::values(path, key);
    for (const std::error_code error : {keys.error(), values.error()}) {
        require(static_cast<TarvoConfig::Error>(error.value()), arguments.target());
    }
    Table table;
    Json json = {{"values", Json::array()}, {"keys", Json::array()}};
    for (const Text& name : keys) {
        table.addRow({{shown(name) + '\\', Style::heading}, {"key", Style::quiet}, {""}});
        json["keys"].push_back(toJson(name));
    }
    for (const rkuinfo::Value& value : values) {
        std::vector<Cell> row = dataCells(value);
        row.insert(row.begin(), {shownName(value), Style::name});
        table.addRow(std::move(row));
        json["values"].push_back(describe(value));
    }
    if (session.json) {
        printJson(json);
    } else {
        table.print(layout(session));
    }
}

namespace {

/// For people a key's contents stand below it, further in; for programs each line names the whole key.
struct TreePrinter
{
    TarvoConfig::Path path;
    Layout layout;
    Table table;

    void add(const std::string& indent, const std::string& key, std::string name, std::vector<Cell> data,
             Style style)
    {
        data.insert(data.begin(), {indent + std::move(name), style});
        if (!layout.columns) {
            data.insert(data.begin(), {key});
        }
        table.addRow(std::move(data));
    }

    void addKey(const Text& key, const std::string& indent)
    {
        const Argument argument(key);
        const std::string shownKey = shown(key);
        auto values = rkuinfo::values(path, argument);
        if (values.error()) {
            add(indent, shownKey, "", {{"?", Style::bad}, {values.error().message(), Style::bad}}, {});
            return;
        }
        for (const rkuinfo::Value& value : values) {
            add(indent, shownKey, shownName(value), dataCells(value), Style::name);
        }
        for (const Text& name : rkuinfo::items(path, argument)) {
            const Text child = joinedKey(key, name);
            add(indent, shown(child), layout.columns ? shown(name) + '\\' : "", {{"key", Style::quiet}, {""}},
                Style::heading);
            addKey(child, layout.columns ? indent + "  " : "");
        }
    }
};

} // namespace

void tree(Session& session, const Arguments& arguments)
{
    startUp(session);
    const TarvoConfig::Path path = arguments.path();
    const Text key = utf16(arguments.key);
    require(static_cast<TarvoConfig::Error>(rkuinfo::values(path, key).error().value()), arguments.target());
    TreePrinter printer = {path, layout(session), {}};
    printer.addKey(key, "");
    printer.table.print(printer.layout);
}

// ---- rm

void remove(Session& session, const Arguments& arguments)
{
    if (arguments.key.empty() && !arguments.valueName && !arguments.all) {
        throw Failure("rm takes a KEY, a --value, or --all for the whole of " + arguments.subtree, exitUsage);
    }
    startUp(session);
    const TarvoConfig::Path path = arguments.path();
    const Argument key(utf16(arguments.key));
    require(static_cast<TarvoConfig::Error>(rkuinfo::items(path, key).error().value()), arguments.target());
    if (!arguments.valueName) {
        require(velaConfig()->removeItem(path, key), arguments.target());
        return;
    }
    const Text name = utf16(*arguments.valueName);
    const auto isNamed = [&](const rkuinfo::Value& value) {
        return !isNameless(value) && equalIgnoringCase(value.name, name);
    };
    auto values = rkuinfo::values(path, key);
    if (std::ranges::find_if(values, isNamed) == values.end()) {
        throw Failure(arguments.target() + ", value '" + shown(name) + "': not found");
    }
    require(velaConfig()->removeValue(path, key, Argument(name)), arguments.target());
}
