// rkuinfo rm.
#include "commands/command.h"

namespace {

struct
{
    Place place;
    std::optional<std::string> value;
    bool all = false;
} arguments;

void rm(Session& session)
{
    const Place& place = arguments.place;
    if (normalised(place.key).empty() && !arguments.value && !arguments.all) {
        throw Failure("rm takes a KEY, a --value, or --all for the whole of " + place.subtree, exitUsage);
    }
    const Installation installation(session);
    const Text path = place.path(installation);
    const std::optional<Key> key = Key::find(path, arguments.value ? KEY_READ | KEY_WRITE : KEY_READ);
    if (!key) {
        place.notFound();
    }
    if (arguments.value) {
        if (!key->removeValue(utf16(*arguments.value))) {
            throw Failure(place.told() + ", value '" + shown(utf16(*arguments.value)) + "': not found");
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
    std::vector<Parameter> parameters = arguments.place.parameters();
    parameters.push_back({"--value", "NAME", &arguments.value,
                          "remove only that value of the key; \"\" is its default value"});
    parameters.push_back({"--all", "", &arguments.all, "remove the subtree's own key"});
    return {"rm", "Remove a key with everything below it, or a value", parameters, "", rm};
}
