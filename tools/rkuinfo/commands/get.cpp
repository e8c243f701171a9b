// rkuinfo get, set and rm.
#include "commands/command.h"

#include "model/system.h"

namespace {

void get(Session& session)
{
    const Place place(session, Installation(session));
    const std::optional<Key> key = Key::find(place.path());
    const std::optional<Value> value = key ? key->value(place.value) : std::nullopt;
    if (!value && session.has("--default")) {
        print(session["--default"]);
        return;
    }
    if (!value) {
        place.failNotFound();
    }
    const ValueType* const type = session.has("--as") ? typeNamed(session["--as"]) : typeOf(*value);
    if (type == nullptr || !type->fits(*value)) {
        throw Failure(
            session["SUBTREE"] + ' ' + session["VALUE"] +
            (type == nullptr ? ": stored with another type" : ": not stored as " + std::string(type->name)));
    }
    const std::string text = type->print(*value);
    print(session.has("--json") ? documentText(toJson(*value)) : terminalColumns() ? shown(text) : text);
}

void set(Session& session)
{
    const ValueType& type = *typeNamed(session["TYPE"]);
    if (session.has("DATA") == session.has("--file")) {
        throw Failure("set needs either DATA or --file", exitUsage);
    }
    const Place place(session, Installation(session));
    const std::string word = session.has("DATA") ? session["DATA"] : readFile(session["--file"]);
    const std::optional<std::string> data = type.parse(word);
    if (!data) {
        throw Failure('\'' + word + "' is not " + std::string(type.word), exitUsage);
    }
    Key::make(place.path()).set({place.value, type.registryType, *data});
}

void rm(Session& session)
{
    const Place place(session, Installation(session));
    if (place.key.empty() && !session.has("--value") && !session.has("--all")) {
        throw Failure("rm needs KEY or --value, or --all for the whole of " + session["SUBTREE"], exitUsage);
    }
    const Key key = place.open(session.has("--value") ? KEY_READ | KEY_WRITE : KEY_READ);
    if (!session.has("--value")) {
        if (const std::optional<Key> parent = Key::find(Text(parentKey(place.path())), KEY_ALL_ACCESS)) {
            parent->removeKey(Text(lastName(place.path())));
        }
    } else if (!key.removeValue(utf16(session["--value"]))) {
        place.failNotFound();
    }
}

const Command getCommand("get", "SUBTREE VALUE [--as] [--default] [--json]", "Print a value",
                         "An application stores a double as eight bytes: --as double prints it as a number.",
                         get);
const Command setCommand("set", "SUBTREE VALUE TYPE [DATA] [--file]", "Store a value, and create its key",
                         "Binary data is in hexadecimal; an integer may be, after 0x.", set);
const Command rmCommand("rm", "SUBTREE [KEY] [--value] [--all]",
                        "Remove a key with everything below it, or a value", "", rm);

} // namespace
