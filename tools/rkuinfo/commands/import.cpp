// rkuinfo import and rkuinfo diff: both compare a file with a key.
#include "commands/command.h"

#include "model/system.h"
#include "model/tree.h"
#include "transfer/file.h"
#include "transfer/json_file.h"
#include "transfer/reg_file.h"

#include <cstdio>

namespace {

struct
{
    Place place;
    std::string file;
    bool dryRun = false;
} arguments;

void checkPaths(const Text& path, const Node& node)
{
    for (const Node& key : node.keys) {
        checkPath(joinedKey(path, key.name), shown(joinedKey(path, key.name)));
        checkPaths(joinedKey(path, key.name), key);
    }
}

std::vector<Change> compare(const Text& path, bool isWhole)
{
    const std::string file = toldName(arguments.file, "standard input");
    const std::string bytes = readFile(arguments.file);
    const Node wanted = isRegFile(bytes) ? fromRegFile(file, bytes, path) : fromJsonFile(file, bytes);
    checkPaths(path, wanted);
    const std::optional<Key> key = Key::find(path);
    std::vector<Change> found = changes(key ? readTree(*key) : Node(), wanted, isWhole);
    if (!key) {
        found.insert(found.begin(), {Change::Kind::added, {}, true, {}, {}});
    }
    return found;
}

void importTree(Session& session)
{
    const Installation installation(session);
    const Text path = arguments.place.path(installation);
    const std::vector<Change> found = compare(path, false);
    if (arguments.dryRun) {
        printChanges(found);
        return;
    }
    const bool isShown = errorsGoToTerminal();
    apply(path, found, [&](std::size_t done) {
        constexpr std::size_t step = 500;
        if (isShown && (done % step == 0 || (done == found.size() && done > step))) {
            std::fprintf(stderr, "\r%zu of %zu%s", done, found.size(), done == found.size() ? "\n" : "");
        }
    });
}

void diff(Session& session)
{
    const Installation installation(session);
    const std::vector<Change> found = compare(arguments.place.path(installation), true);
    printChanges(found);
    session.exitCode = found.empty() ? 0 : exitFailed;
}

std::vector<Parameter> parameters()
{
    std::vector<Parameter> all = arguments.place.parameters();
    all.push_back({"--file", "FILE", &arguments.file, "where from, instead of standard input"});
    return all;
}

} // namespace

Command importCommand()
{
    std::vector<Parameter> all = parameters();
    all.push_back({"--dry-run", "", &arguments.dryRun, "only print what would change, as diff does"});
    return {
        "import", "Write what export gave, or a .reg file, into a key", all,
        "What is there already stays, unless it has the same name. A bad file changes nothing, and a write "
        "that is refused takes back those before it; only a process that is ended in between leaves a part.",
        importTree};
}

Command diffCommand()
{
    return {
        "diff", "Tell what a file has and a key has not", parameters(),
        "+ is in the file alone, - in the key alone, ~ in both with other data. Exit code 1 when something "
        "differs.",
        diff};
}
