// rkuinfo diff.
#include "commands/command.h"

#include "commands/comparison.h"

namespace {

struct
{
    Place place;
    std::string file;
} diffArguments;

void diff(Session& session)
{
    const Installation installation(session);
    const std::vector<Change> found =
        compare(diffArguments.place.path(installation), diffArguments.file, true);
    printChanges(found);
    session.exitCode = found.empty() ? 0 : exitFailed;
}

} // namespace

Command diffCommand()
{
    std::vector<Parameter> all = diffArguments.place.parameters();
    all.push_back({"--file", "FILE", &diffArguments.file, "the file, instead of standard input"});
    return {
        "diff", "Tell what a file has and a key has not", all,
        "+ is in the file alone, - in the key alone, ~ in both with other data. Exit code 1 when something "
        "differs.",
        diff};
}
