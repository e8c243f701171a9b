// rkuinfo get, set, list, tree and rm.
#include "commands.h"

#include "installation.h"
#include "json.h"
#include "table.h"
#include "target.h"
#include "value.h"

#include <RkUInfo.hpp>

#include <algorithm>
#include <memory>
#include <optional>

namespace {

using rkuinfo::Argument;

struct Arguments
{
    Target target;
    std::string type;
    std::string word;
    std::optional<std::string> valueName;
    bool all = false;
};
using Run = void (*)(Session& session, const Arguments& arguments);

/// A command on a subtree; it gets the rest of its command line from the caller.
CLI::App* addCommand(CLI::App& app, Session& session, const char* name, const char* description, Run run,
                     const std::shared_ptr<Arguments>& arguments)
{
    CLI::App* const command = app.add_subcommand(name, description);
    addSubtree(*command, arguments->target);
    command->callback([&session, run, arguments] { run(session, *arguments); });
    return command;
}

// ---- get and set
// -------------------------------------------------------------------------------------------

void get(Session& session, const Arguments& arguments)
{
    startUp(session);
    VelaVariant value;
    require(velaConfig()->getValue(arguments.target.path(), Argument(utf16(arguments.target.key)), value),
            arguments.target.name());
    if (session.json) {
        print(toJson(value));
    } else {
        fmt::print("{}\n", dataText(value));
    }
}

void set(Session& session, const Arguments& arguments)
{
    const VelaVariant::VarType type = typeOf(arguments.type);
    const std::optional<VelaVariant> value = parseValue(type, arguments.word);
    if (!value) {
        throw Failure(
            fmt::format("'{}' is no {}: it takes {}", arguments.word, arguments.type, expectation(type)),
            exitUsage);
    }
    startUp(session);
    require(velaConfig()->setValue(arguments.target.path(), Argument(utf16(arguments.target.key)), *value),
            arguments.target.name());
}

// ---- list and tree
// -----------------------------------------------------------------------------------------

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
        return {{"?", badStyle}, {value.error.message(), badStyle}};
    }
    const std::string data =
        value.data.type() == VelaVariant::eString ? shown(*value.as<Text>()) : dataText(value.data);
    return {{std::string(typeName(value.data.type())), quietStyle}, {data}};
}

Json describe(const rkuinfo::Value& value)
{
    Json json = {{"name", toJson(value.name)}};
    json.update(value.error ? Json({{"error", value.error.message()}}) : toJson(value.data));
    return json;
}

void list(Session& session, const Arguments& arguments)
{
    startUp(session);
    const TarvoConfig::Path path = arguments.target.path();
    const Argument key(utf16(arguments.target.key));
    auto keys = rkuinfo::items(path, key);
    auto values = rkuinfo::values(path, key);
    for (const std::error_code error : {keys.error(), values.error()}) {
        require(static_cast<TarvoConfig::Error>(error.value()), arguments.target.name());
    }
    Table table;
    Json json = {{"values", Json::array()}, {"keys", Json::array()}};
    for (const Text& name : keys) {
        table.addRow({{shown(name) + '\\', headingStyle}, {"key", quietStyle}, {""}});
        json["keys"].push_back(toJson(name));
    }
    for (const rkuinfo::Value& value : values) {
        std::vector<Cell> row = dataCells(value);
        row.insert(row.begin(), {shownName(value), nameStyle});
        table.addRow(std::move(row));
        json["values"].push_back(describe(value));
    }
    if (session.json) {
        print(json);
    } else {
        table.print(layout(session));
    }
}

/// For people a key's contents stand below it, further in; for programs each line names the whole key.
struct TreePrinter
{
    TarvoConfig::Path path;
    Layout layout;
    Table table;

    void add(const std::string& indent, const std::string& key, std::string name, std::vector<Cell> data,
             const fmt::text_style& style)
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
            add(indent, shownKey, "", {{"?", badStyle}, {values.error().message(), badStyle}}, {});
            return;
        }
        for (const rkuinfo::Value& value : values) {
            add(indent, shownKey, shownName(value), dataCells(value), nameStyle);
        }
        for (const Text& name : rkuinfo::items(path, argument)) {
            const Text child = joinedKey(key, name);
            add(indent, shown(child), layout.columns ? shown(name) + '\\' : "", {{"key", quietStyle}, {""}},
                headingStyle);
            addKey(child, layout.columns ? indent + "  " : "");
        }
    }
};

void tree(Session& session, const Arguments& arguments)
{
    startUp(session);
    const TarvoConfig::Path path = arguments.target.path();
    const Text key = utf16(arguments.target.key);
    require(static_cast<TarvoConfig::Error>(rkuinfo::values(path, key).error().value()),
            arguments.target.name());
    TreePrinter printer = {path, layout(session), {}};
    printer.addKey(key, "");
    printer.table.print(printer.layout);
}

// ---- rm
// ----------------------------------------------------------------------------------------------------

void remove(Session& session, const Arguments& arguments)
{
    const Target& target = arguments.target;
    if (target.key.empty() && !arguments.valueName && !arguments.all) {
        throw Failure("rm takes a KEY, a --value, or --all for the whole of " + target.subtree, exitUsage);
    }
    startUp(session);
    const TarvoConfig::Path path = target.path();
    const Argument key(utf16(target.key));
    require(static_cast<TarvoConfig::Error>(rkuinfo::items(path, key).error().value()), target.name());
    if (!arguments.valueName) {
        require(velaConfig()->removeItem(path, key), target.name());
        return;
    }
    const Text name = utf16(*arguments.valueName);
    const auto isNamed = [&](const rkuinfo::Value& value) {
        return !isNameless(value) && equalIgnoringCase(value.name, name);
    };
    auto values = rkuinfo::values(path, key);
    if (std::ranges::find_if(values, isNamed) == values.end()) {
        throw Failure(target.name() + ", value '" + shown(name) + "': not found");
    }
    require(velaConfig()->removeValue(path, key, Argument(name)), target.name());
}

} // namespace

void addStoreCommands(CLI::App& app, Session& session)
{
    const auto make = [] { return std::make_shared<Arguments>(); };
    constexpr const char* valueHelp = "a value: its name, with its key before it, / or \\ between them";

    auto arguments = make();
    CLI::App* command = addCommand(app, session, "get", "Print a value", get, arguments);
    command->add_option("VALUE", arguments->target.key, valueHelp)->type_name("")->required();
    command->add_flag("--json", session.json, "Print JSON, with the type");

    arguments = make();
    command = addCommand(app, session, "set", "Store a value and make its key", set, arguments);
    command->add_option("VALUE", arguments->target.key, valueHelp)->type_name("")->required();
    command->add_option("TYPE", arguments->type, "int, int64, double, binary (in hexadecimal) or string")
        ->type_name("")
        ->required()
        ->check(CLI::IsMember(typeNames()).description(""));
    command->add_option("DATA", arguments->word, "what to store; behind -- when it begins with a dash")
        ->type_name("")

        ->required();

    arguments = make();
    command = addCommand(app, session, "list", "List the keys and values of a key", list, arguments);
    addKey(*command, arguments->target);
    command->add_flag("--json", session.json, "Print JSON");

    arguments = make();
    command = addCommand(app, session, "tree", "List a key with everything below it", tree, arguments);
    addKey(*command, arguments->target);

    arguments = make();
    command = addCommand(app, session, "rm", "Remove a key with everything below it, or a value", remove,
                         arguments);
    addKey(*command, arguments->target);
    command
        ->add_option_function<std::string>(
            "--value", [arguments](const std::string& name) { arguments->valueName = name; },
            "Remove only that value of the key; \"\" is its default value")
        ->type_name("NAME");
    command->add_flag("--all", arguments->all, "Remove the subtree's own key");
}
