// rkuinfo list and search.
#include "commands/command.h"

#include <algorithm>

namespace {

void list(Session& session)
{
    const Place place(session, Installation(session));
    const bool isDeep = session.has("--recursive");
    const Tree tree = place.tree(isDeep);
    Table table;
    for (const auto& [name, value] : tree) {
        if (!name.key.empty() || !name.isKey()) {
            table.push_back(rowOf(place, name, value, session.layout().columns.has_value()));
        }
    }
    Json json = toJson(tree);
    for (Json& key : json["keys"]) {
        key = isDeep ? key : Json(key["name"]);
    }
    printEither(session, table, json);
}

void search(Session& session)
{
    const std::string word = session["TEXT"];
    const Text text = utf16(word);
    std::vector<Value> numbers; // the values that the word represents, one for each type
    for (const ValueType& type : valueTypes) {
        if (const std::optional<std::string> data = type.parse(word)) {
            numbers.push_back({{}, type.registryType, *data});
        }
    }
    const auto matches = [&](const Name& name, const Value& value) {
        return name.isKey() ? !name.key.empty() && containsIgnoringCase(lastName(name.key), text)
                            : containsIgnoringCase(*name.value, text) ||
                                  containsIgnoringCase(utf16(dataText(value)), text) ||
                                  std::ranges::any_of(numbers, [&](const Value& number) {
                                      return number.type == value.type && number.data == value.data;
                                  });
    };
    const Place place(session, Installation(session));
    Table found;
    for (const auto& [name, value] : place.tree()) {
        if (matches(name, value)) {
            found.push_back(rowOf(place, name, value, session.layout().columns.has_value()));
        }
    }
    printTable(found, session.layout());
    session.exitCode = found.empty() ? exitFailed : 0;
}

const Command listCommand("list", "SUBTREE [KEY] [--recursive] [--json]", "List the keys and values of a key",
                          "", list);
const Command searchCommand({"search", "SUBTREE TEXT [KEY]", "Find keys and values by name or data",
                             "If TEXT is a number, such as 0x204060 or 2.5, equal numbers are also found.\n"
                             "Exit code 1 when nothing is found.",
                             search});

} // namespace

std::vector<Cell> rowOf(const Place& place, const Name& name, const Value& value, bool isForPeople)
{
    std::string word;
    std::string type = "key";
    std::string data;
    if (!name.isKey()) {
        const ValueType* const known = typeOf(value);
        word = name.value->empty() ? "(default)" : shown(*name.value);
        type = known != nullptr ? known->name : "type " + std::to_string(value.type);
        data = shown(dataText(value));
    }
    if (!isForPeople) {
        return {{shown(joinedKey(place.key, name.key))}, {word}, {type}, {data}};
    }
    const std::string above = name.key.empty() && !name.isKey() ? "" : shown(name.key) + '\\';
    return {{above + word, name.isKey() ? Style::heading : Style::name}, {type, Style::quiet}, {data}};
}
