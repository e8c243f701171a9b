// rkuinfo import.
#include "commands/command.h"

#include "commands/comparison.h"
#include "model/system.h"

#include <cstdio>

namespace {

struct
{
    Place place;
    std::string file;
    bool dryRun = false;
} importArguments;

void importTree(Session& session)
{
    const Installation installation(session);
    const Text path = importArguments.place.path(installation);
    const std::vector<Change> found = compare(path, importArguments.file, false);
    if (importArguments.dryRun) {
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

} // namespace

Command importCommand()
{
    std::vector<Parameter> all = importArguments.place.parameters();
    all.push_back({"--file", "FILE", &importArguments.file, "where from, instead of standard input"});
    all.push_back({"--dry-run", "", &importArguments.dryRun, "only print what would change, as diff does"});
    return {
        "import", "Write what export gave, or a .reg file, into a key", all,
        "What is there already stays, unless it has the same name. A bad file changes nothing, and a write "
        "that is refused takes back those before it; only a process that is ended in between leaves a part.",
        importTree};
}
