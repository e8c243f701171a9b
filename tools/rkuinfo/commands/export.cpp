// rkuinfo export.
#include "commands/command.h"

#include "transfer/file.h"
#include "transfer/json_file.h"
#include "transfer/reg_file.h"

namespace {

struct
{
    Place place;
    std::string file;
    std::string format = "json";
} exportArguments;

void exportTree(Session& session)
{
    const std::string format = chosen(exportArguments.format, {"json", "reg"}, "format");
    const Installation installation(session);
    const Text path = exportArguments.place.path(installation);
    const std::optional<Key> key = Key::find(path);
    if (!key) {
        exportArguments.place.notFound();
    }
    const Node node = readTree(*key);
    writeFile(exportArguments.file, format == "json" ? toJsonFile(node) : toRegFile(path, node));
}

} // namespace

Command exportCommand()
{
    std::vector<Parameter> parameters = exportArguments.place.parameters();
    parameters.push_back({"--file", "FILE", &exportArguments.file,
                          "where to, instead of standard output; it is replaced as a whole"});
    parameters.push_back({"--format", "FORMAT", &exportArguments.format,
                          "json, or reg: a file of the Windows registry editor, version 5.00"});
    return {"export", "Write a key with everything below it to a file", parameters, "", exportTree};
}
