#include "commands/comparison.h"

#include "commands/command.h"
#include "transfer/file.h"
#include "transfer/json_file.h"
#include "transfer/reg_file.h"

namespace {

void checkPaths(const Text& path, const Node& node)
{
    for (const Node& key : node.keys) {
        checkPath(joinedKey(path, key.name), shown(joinedKey(path, key.name)));
        checkPaths(joinedKey(path, key.name), key);
    }
}

} // namespace

std::vector<Change> compare(const Text& path, const std::string& file, bool isWhole)
{
    const std::string told = toldName(file, "standard input");
    const std::string bytes = readFile(file);
    const Node wanted = isRegFile(bytes) ? fromRegFile(told, bytes, path) : fromJsonFile(told, bytes);
    checkPaths(path, wanted);
    const std::optional<Key> key = Key::find(path);
    std::vector<Change> found = changes(key ? readTree(*key) : Node(), wanted, isWhole);
    if (!key && wanted.isMade) {
        found.insert(found.begin(), {Change::Kind::added, {}, true, {}, {}});
    }
    return found;
}
