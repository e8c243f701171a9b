// rkuinfo set.
#include "commands/command.h"

#include "model/value.h"
#include "transfer/file.h"

namespace {

struct
{
    Place place;
    std::string type;
    std::optional<std::string> data;
    std::string file;
} setArguments;

void set(Session& session)
{
    const std::string type = chosen(setArguments.type, typeNames(), "type");
    if (setArguments.data.has_value() == !setArguments.file.empty()) {
        throw Failure("set takes DATA, or a --file with it", exitUsage);
    }
    const auto [below, name] = splitValue(setArguments.place.key);
    constexpr std::size_t longestName = 1023; // that an application can read
    if (name.size() > longestName) {
        throw Failure(setArguments.place.told() + ": name too long: a value's has at most 1023 characters");
    }
    Value value = parseValue(type, setArguments.data ? *setArguments.data : readFile(setArguments.file));
    value.name = name;
    Place place = {setArguments.place.subtree, utf8(below)};
    const Installation installation(session);
    Key::make(place.path(installation)).set(value);
}

} // namespace

Command setCommand()
{
    std::vector<Parameter> parameters = setArguments.place.parameters();
    parameters[1] = {"VALUE", "", &setArguments.place.key,
                     "a value: its name, with its key before it, / or \\ between them", true};
    parameters.push_back(
        {"TYPE", "", &setArguments.type, "int, int64, double, binary (in hexadecimal) or string", true});
    parameters.push_back({"DATA", "", &setArguments.data,
                          "what to store; behind -- when it begins with a dash. Integers also as 0xff"});
    parameters.push_back(
        {"--file", "FILE", &setArguments.file, "take DATA from a file; - is standard input"});
    return {"set", "Store a value and make its key", parameters,
            "A double is stored as its eight bytes, as applications do; get --as double gives it back.", set};
}
