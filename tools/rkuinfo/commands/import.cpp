// rkuinfo export, import and diff.
#include "commands/command.h"

#include "model/system.h"

#include <algorithm>
#include <ctime>

namespace {

void exportTree(Session& session)
{
    const Installation installation(session);
    const Place place(session, installation);
    Losses losses;
    const Tree tree = place.tree(true, session.has("--salvage") ? &losses : nullptr);
    char today[sizeof "2018-03-16"] = {};
    const std::time_t now = std::time(nullptr);
    std::strftime(today, sizeof today, "%Y-%m-%d", std::gmtime(&now));
    const Json header = {{"format", 1},
                         {"product", toJson(rkuinfo::text(installation.product.value()))},
                         {"language", installation.hasLanguage() ? toJson(installation.language()) : Json()},
                         {"date", today}};
    writeFile(session["--file"], documentText(toJson(tree, header)) + '\n');
    // Reading a damaged key may report the same error repeatedly.
    losses.erase(std::unique(losses.begin(), losses.end()), losses.end());
    for (const std::string& loss : losses) {
        printError("not exported: " + loss);
        session.exitCode = exitFailed;
    }
}

std::vector<Edit> readEdits(const Session& session, const Place& place)
{
    const std::string name = isStream(session["--file"]) ? "standard input" : session["--file"];
    const std::string bytes = readFile(session["--file"]);
    showProgress("bytes to read:", bytes.size());
    return isRegFile(bytes) ? fromRegFile(name, bytes, place.path())
                            : fromJsonFile(name, bytes, place.path());
}

/// Compares a key with the result of an import.
struct Comparison
{
    Comparison(const Place& place, const std::vector<Edit>& edits, bool isReplaced)
        : before(readTree(place.path())), after(isReplaced ? Tree{{Name(), Value()}} : before)
    {
        edit(after, edits);
        changes = compare(before, after);
    }

    const Tree before;
    Tree after;
    std::vector<Change> changes;
};

/// Prints a changed value as two rows: the old value and the new one.
void printChanges(const Session& session, const Place& place, const std::vector<Change>& changes)
{
    Table table;
    const auto add = [&](const Name& name, const Value* value, const Cell& sign) {
        if (value != nullptr) {
            table.push_back(rowOf(place, name, *value, session.layout().columns.has_value()));
            table.back().insert(table.back().begin(), sign);
        }
    };
    for (const auto& [name, before, after] : changes) {
        add(name, before, {"-", Style::bad});
        add(name, after, {"+", Style::good});
    }
    printTable(table, session.layout());
}

void importTree(Session& session)
{
    const Place place(session, Installation(session));
    const std::vector<Edit> edits = readEdits(session, place);
    const bool isReplaced = session.has("--replace");
    if (session.has("--dry-run")) {
        printChanges(session, place, Comparison(place, edits, isReplaced).changes);
    } else { // the transaction includes the comparison, so that no other process writes in between
        inTransaction([&] { carryOut(place.path(), Comparison(place, edits, isReplaced).changes); });
    }
}

void diff(Session& session)
{
    const Place place(session, Installation(session));
    const Comparison comparison(place, readEdits(session, place), true);
    printChanges(session, place, comparison.changes);
    session.exitCode = comparison.changes.empty() ? 0 : exitFailed;
}

const Command exportCommand("export", "SUBTREE [KEY] [--file] [--salvage]",
                            "Write a key with everything below it to a file", "", exportTree);
const Command importCommand({"import", "SUBTREE [KEY] [--file] [--replace] [--dry-run]",
                             "Write the contents of an export or a .reg file into a key",
                             "The file's values replace existing values of the same name.\n"
                             "An import that fails changes nothing.",
                             importTree});
const Command diffCommand({"diff", "SUBTREE [KEY] [--file]", "Compare a key with a file",
                           "- marks data in the key, + data in the file. Exit code 1 if they differ.", diff});

} // namespace
