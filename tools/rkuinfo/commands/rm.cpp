// rkuinfo rm.
#include "commands/command.h"

namespace {

struct
{
    Place place;
    std::optional<std::string> value;
    bool all = false;
} rmArguments;

void rm(Session& session)
{
    const Place& place = rmArguments.place;
    if (normalised(place.key).empty() && !rmArguments.value && !rmArguments.all) {
        throw Failure("rm takes a KEY, a --value, or --all for the whole of " + place.subtree, exitUsage);
    }
    const Installation installation(session);
    const Text path = place.path(installation);
    const std::optional<Key> key = Key::find(path, rmArguments.value ? KEY_READ | KEY_WRITE : KEY_READ);
    if (!key) {
        place.notFound();
    }
    if (rmArguments.value) {
        if (!key->removeValue(utf16(*rmArguments.value))) {
            throw Failure(place.told() + ", value '" + shown(utf16(*rmArguments.value)) + "': not found");
        }
        return;
    }
    const std::size_t end = path.rfind(Text::value_type('\\'));
    const std::optional<Key> parent = Key::find(path.substr(0, end), KEY_ALL_ACCESS);
    if (!parent) { // another process has removed it in between
        place.notFound();
    }
    parent->removeKey(path.substr(end + 1));
}

} // namespace

Command rmCommand()
{
    std::vector<Parameter> parameters = rmArguments.place.parameters();
    parameters.push_back({"--value", "NAME", &rmArguments.value,
                          "remove only that value of the key; \"\" is its default value"});
    parameters.push_back({"--all", "", &rmArguments.all, "remove the subtree's own key"});
    return {"rm", "Remove a key with everything below it, or a value", parameters, "", rm};
}
