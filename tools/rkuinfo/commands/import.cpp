// rkuinfo export, import and diff.
#include "commands/command.h"

#include "model/system.h"

#include <ctime>

namespace {

std::string today()
{
    const std::time_t now = std::time(nullptr);
    char date[sizeof "2018-03-16"] = {};
    std::strftime(date, sizeof date, "%Y-%m-%d", std::gmtime(&now));
    return date;
}

void exportTree(Session& session)
{
    const Installation installation(session);
    const Place place(session, installation);
    const bool isReg = session["--format"] == "reg";
    if (isReg && isStream(session["--file"]) && terminalColumns()) {
        throw Failure("a .reg file is not text for a terminal: use --file", exitUsage);
    }
    std::vector<std::string> losses;
    const Tree tree = readTree(place.open(), session.has("--salvage") ? &losses : nullptr);
    const bool hasLanguage =
        installation.preferred != uinfo::unknownLanguage && installation.whyNotWanted().empty();
    const Json header = {{"format", 1},
                         {"product", toJson(rkuinfo::text(installation.product.value()))},
                         {"language", hasLanguage ? toJson(installation.language()) : Json()},
                         {"date", today()}};
    writeFile(session["--file"],
              isReg ? toRegFile(place.path(), tree) : documentText(toJson(tree, header)) + '\n');
    for (const std::string& loss : losses) {
        printError("not exported: " + loss);
        session.exitCode = exitFailed;
    }
}

std::vector<Edit> readEdits(const Session& session, const Text& path)
{
    const std::string name = isStream(session["--file"]) ? "standard input" : session["--file"];
    const std::string bytes = readFile(session["--file"]);
    showProgress("bytes to read:", bytes.size());
    return isRegFile(bytes) ? fromRegFile(name, bytes, path) : fromJsonFile(name, bytes, path);
}

Tree readIfPresent(const Text& path)
{
    std::optional<Key> key = Key::find(path);
    return key ? readTree(std::move(*key)) : Tree();
}

void importTree(Session& session)
{
    const Text path = Place(session, Installation(session)).path();
    const std::vector<Edit> edits = readEdits(session, path);
    const auto apply = [&] {
        const Tree before = readIfPresent(path);
        Tree after = session.has("--replace") ? Tree{{Name(), Value()}} : before;
        edit(after, edits);
        const std::vector<Change> changes = compare(before, after);
        session.has("--dry-run") ? printChanges(changes) : carryOut(path, changes);
    };
    // It begins before the comparison, so that no other process writes in between.
    session.has("--dry-run") ? apply() : inTransaction(apply);
}

void diff(Session& session)
{
    const Text path = Place(session, Installation(session)).path();
    const Tree before = readIfPresent(path);
    Tree after = {{Name(), Value()}};
    edit(after, readEdits(session, path));
    const std::vector<Change> changes = compare(before, after);
    printChanges(changes);
    session.exitCode = changes.empty() ? 0 : exitFailed;
}

const Command exportCommand("export", "SUBTREE [KEY] [--file] [--format] [--salvage]",
                            "Write a key with everything below it to a file", "", exportTree);
const Command
    importCommand({"import", "SUBTREE [KEY] [--file] [--replace] [--dry-run]",
                   "Write what export gave, or a .reg file, into a key",
                   "What exists stays unless the file has the same name, or --replace is given. An\n"
                   "import is done whole or not at all.",
                   importTree});
const Command
    diffCommand({"diff", "SUBTREE [KEY] [--file]", "Compare a key with a file",
                 "+ is only in the file, - only in the key, ~ in both with other data. Exit code 1\n"
                 "when something differs.",
                 diff});

} // namespace
