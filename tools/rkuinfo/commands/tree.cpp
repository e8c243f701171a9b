// rkuinfo tree.
#include "commands/command.h"

#include "commands/cells.h"
#include "model/tree.h"

namespace {

Place place;

/// For people a key's contents stand below it, further in; for programs each line names the whole key.
struct TreePrinter
{
    Layout layout;
    Table table;

    std::vector<Cell> names(const std::string& indent, const Text& key, const std::string& name,
                            Style style) const
    {
        return layout.columns ? std::vector<Cell>{{indent + name, style}}
                              : std::vector<Cell>{{shown(key)}, {name, style}};
    }

    void addKey(const Text& path, const Node& key, const std::string& indent)
    {
        for (const Value& value : key.values) {
            table.addRow(valueRow(names(indent, path, shownName(value), Style::name), value));
        }
        for (const Node& below : key.keys) {
            const Text child = joinedKey(path, below.name);
            const std::string name = layout.columns ? shown(below.name) + '\\' : "";
            table.addRow(keyRow(names(indent, child, name, Style::heading)));
            addKey(child, below, layout.columns ? indent + "  " : "");
        }
    }
};

void tree(Session& session)
{
    const Installation installation(session);
    const std::optional<Key> key = Key::find(place.path(installation));
    if (!key) {
        place.notFound();
    }
    TreePrinter printer = {session.layout(), {}};
    printer.addKey(normalised(place.key), readTree(*key), "");
    printer.table.print(printer.layout);
}

} // namespace

Command treeCommand()
{
    return {"tree", "List a key with everything below it", place.parameters(), "", tree};
}
