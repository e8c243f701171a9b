// rkuinfo search.
#include "commands/command.h"

#include "commands/cells.h"
#include "model/tree.h"

namespace {

struct
{
    Place place;
    std::string text;
} searchArguments;

struct Search
{
    Text text;
    Table found;
    bool isEmpty = true;

    static std::vector<Cell> names(const Text& key, const std::string& name)
    {
        return {{(key.empty() ? "" : shown(key) + '\\') + name, Style::name}};
    }

    void add(std::vector<Cell> row)
    {
        isEmpty = false;
        found.addRow(std::move(row));
    }

    void look(const Text& path, const Node& key)
    {
        for (const Value& value : key.values) {
            if (containsIgnoringCase(value.name, text) ||
                containsIgnoringCase(utf16(dataText(value)), text)) {
                add(valueRow(names(path, shownName(value)), value));
            }
        }
        for (const Node& below : key.keys) {
            const Text child = joinedKey(path, below.name);
            if (containsIgnoringCase(below.name, text)) {
                add(keyRow(names(child, "")));
            }
            look(child, below);
        }
    }
};

void search(Session& session)
{
    const Installation installation(session);
    const std::optional<Key> key = Key::find(searchArguments.place.path(installation));
    if (!key) {
        searchArguments.place.notFound();
    }
    Search search = {utf16(searchArguments.text), {}};
    search.look(normalised(searchArguments.place.key), readTree(*key));
    search.found.print(session.layout());
    session.exitCode = search.isEmpty ? exitFailed : 0;
}

} // namespace

Command searchCommand()
{
    std::vector<Parameter> parameters = searchArguments.place.parameters();
    parameters.insert(parameters.begin() + 1, {"TEXT", "", &searchArguments.text,
                                               "a part of a name or of a value's data, in any case", true});
    return {"search", "Find keys and values by name or data", parameters, "Exit code 1 when there are none.",
            search};
}
