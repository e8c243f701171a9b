// rkuinfo list, tree and search.
#include "commands/command.h"

#include <algorithm>

namespace {

/// Adds a row for a value, or for a key without one. People get the label; programs the whole path below the
/// subtree and the value's name, in every listing alike.
void addRow(Table& table, const Layout& layout, const Text& path, const Value* value,
            const std::string& label)
{
    const std::string name = value == nullptr ? "" : value->name.empty() ? "(default)" : shown(value->name);
    const ValueType* const type = value != nullptr ? typeOf(*value) : nullptr;
    std::vector<Cell> row = {{shown(path)}, {name}};
    if (layout.columns) {
        row = {{value == nullptr ? label + '\\' : label + name,
                value == nullptr ? Style::heading : Style::name}};
    }
    row.push_back({value == nullptr ? "key" : type != nullptr ? std::string(type->name) : "?", Style::quiet});
    row.push_back(value == nullptr  ? Cell{""}
                  : type != nullptr ? Cell{shown(dataText(*value))}
                                    : Cell{"stored with another type", Style::quiet});
    table.addRow(std::move(row));
}

void listTree(const Session& session, const Place& place, const Tree& tree)
{
    Table table;
    for (const auto& [name, value] : tree) {
        const auto level = static_cast<std::size_t>(std::ranges::count(name.key, separator)) + 1;
        const std::string indent(name.key.empty() ? 0 : 2 * level, ' ');
        const Text path = joinedKey(place.key, name.key);
        if (!name.isKey()) {
            addRow(table, session.layout(), path, &value, indent);
        } else if (!name.key.empty()) {
            addRow(table, session.layout(), path, nullptr, indent.substr(2) + shown(lastName(name.key)));
        }
    }
    table.print(session.layout());
}

void tree(Session& session)
{
    const Place place(session, Installation(session));
    const Tree tree = readTree(place.open());
    if (session.has("--json")) {
        print(documentText(toJson(tree)));
    } else {
        listTree(session, place, tree);
    }
}

void list(Session& session)
{
    if (session.has("--recursive")) {
        tree(session);
        return;
    }
    const Place place(session, Installation(session));
    const Key key = place.open();
    Table table;
    Json json = {{"values", Json::array()}, {"keys", Json::array()}};
    for (const Text& name : key.keys()) {
        addRow(table, session.layout(), joinedKey(place.key, name), nullptr, shown(name));
        json["keys"].push_back(toJson(name));
    }
    for (const Value& value : key.values()) {
        addRow(table, session.layout(), place.key, &value, "");
        json["values"].push_back(toNamedJson(value));
    }
    printEither(session, table, json);
}

void search(Session& session)
{
    const std::string word = session["TEXT"];
    const Text text = utf16(word);
    std::vector<Value> numbers; // as each type stores what the word says
    for (const ValueType& type : valueTypes()) {
        if (const std::optional<std::string> data = type.parse(word)) {
            numbers.push_back({{}, type.registryType, *data});
        }
    }
    Table found;
    const auto matches = [&](const Value& value) {
        return containsIgnoringCase(value.name, text) || containsIgnoringCase(utf16(dataText(value)), text) ||
               std::ranges::any_of(numbers, [&](const Value& number) {
                   return number.type == value.type && number.data == value.data;
               });
    };
    const Place place(session, Installation(session));
    for (const auto& [name, value] : readTree(place.open())) {
        const Text path = joinedKey(place.key, name.key);
        if (name.isKey() && containsIgnoringCase(lastName(name.key), text) && !name.key.empty()) {
            addRow(found, session.layout(), path, nullptr, shown(path));
        } else if (!name.isKey() && matches(value)) {
            addRow(found, session.layout(), path, &value, path.empty() ? "" : shown(path) + '\\');
        }
    }
    found.print(session.layout());
    session.exitCode = found.isEmpty() ? exitFailed : 0;
}

const Command listCommand("list", "SUBTREE [KEY] [--recursive] [--json]", "List the keys and values of a key",
                          "", list);
const Command treeCommand("tree", "SUBTREE [KEY] [--json]",
                          "List everything below a key, as list --recursive", "", tree);
const Command
    searchCommand({"search", "SUBTREE TEXT [KEY]", "Find keys and values by name or data",
                   "A number also finds what set stores for it, such as 0x204060 or 2.5. Exit code 1\n"
                   "when nothing is found.",
                   search});

} // namespace
