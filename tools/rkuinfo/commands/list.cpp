// rkuinfo list.
#include "commands/command.h"

#include "commands/cells.h"
#include "transfer/json_file.h"

namespace {

struct
{
    Place place;
    bool json = false;
} listArguments;

void list(Session& session)
{
    const Installation installation(session);
    const std::optional<Key> key = Key::find(listArguments.place.path(installation));
    if (!key) {
        listArguments.place.notFound();
    }
    Table table;
    Json json = {{"values", Json::array()}, {"keys", Json::array()}};
    for (const Text& name : key->keys()) {
        table.addRow(keyRow({{shown(name) + '\\', Style::heading}}));
        json["keys"].push_back(toJson(name));
    }
    for (const Value& value : key->values()) {
        table.addRow(valueRow({{shownName(value), Style::name}}, value));
        json["values"].push_back(toNamedJson(value));
    }
    if (listArguments.json) {
        printJson(json);
    } else {
        table.print(session.layout());
    }
}

} // namespace

Command listCommand()
{
    std::vector<Parameter> parameters = listArguments.place.parameters();
    parameters.push_back(jsonFlag(listArguments.json));
    return {"list", "List the keys and values of a key", parameters, "", list};
}
