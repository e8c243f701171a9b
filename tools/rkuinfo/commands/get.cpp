// rkuinfo get, set and rm.
#include "commands/command.h"

#include "model/system.h"

namespace {

void get(Session& session)
{
    const Place place(session, Installation(session));
    const std::optional<Value> value = readValue(place.path(), *place.value);
    if (!value) {
        place.failNotFound();
    }
    const ValueType* const type = session.has("--as") ? typeNamed(session["--as"]) : typeOf(*value);
    if (type == nullptr || !type->fits(*value)) {
        throw Failure(session["VALUE"] + " is not stored as " +
                      (type == nullptr ? "a type that applications read" : std::string(type->name)));
    }
    const std::string text = type->print(*value);
    print(session.has("--json") ? documentText(toJson(*value)) : terminalColumns() ? shown(text) : text);
}

void set(Session& session)
{
    const ValueType& type = *typeNamed(session["TYPE"]);
    const Place place(session, Installation(session));
    const std::optional<std::string> data = type.parse(session["DATA"]);
    if (!data) {
        throw Failure('\'' + session["DATA"] + "' is not " + std::string(type.word), {}, exitUsage);
    }
    const Value value = {*place.value, type.registryType, *data};
    carryOut(place.path(), {{{{}, value.name}, nullptr, &value}});
}

void rm(Session& session)
{
    const Place place(session, Installation(session));
    if (place.key.empty() && !place.value && !session.has("--all")) {
        throw Failure("rm needs KEY or --value, or --all for the whole of " + session["SUBTREE"], {},
                      exitUsage);
    }
    if (!place.tree(false).contains({{}, place.value})) {
        place.failNotFound();
    }
    carryOut(place.path(), {{{{}, place.value}, nullptr, nullptr}});
}

const Command getCommand("get", "SUBTREE VALUE [--as] [--json]", "Print a value",
                         "An application stores a double as eight bytes: --as double prints it as a number.",
                         get);
const Command setCommand("set", "SUBTREE VALUE TYPE DATA", "Store a value, and create its key",
                         "Binary data is in hexadecimal. A hexadecimal integer begins with 0x.", set);
const Command rmCommand("rm", "SUBTREE [KEY] [--value] [--all]",
                        "Remove a value, or a key and everything below it", "", rm);

} // namespace
