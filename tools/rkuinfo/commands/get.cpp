// rkuinfo get.
#include "commands/command.h"

#include "model/value.h"
#include "transfer/json_file.h"

#include <charconv>

namespace {

struct
{
    Place place;
    std::string type;
    std::optional<std::string> otherwise;
    bool json = false;
} arguments;

std::string asDouble(const Value& value, const std::string& told)
{
    const std::optional<double> number = doubleOf(value);
    if (!number) {
        throw Failure(told + ": it is no double, which has eight bytes");
    }
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, *number).ptr};
}

std::string asHex(const Value& value, const std::string& told)
{
    if (value.type != REG_DWORD && value.type != REG_QWORD) {
        throw Failure(told + ": it is no int and no int64");
    }
    const auto bits = numberOf<std::uint64_t>(value);
    return "0x" + (value.type == REG_QWORD ? hexDigits(static_cast<std::uint32_t>(bits >> 32), 8) : "") +
           hexDigits(static_cast<std::uint32_t>(bits), 8);
}

std::optional<Value> find(const Session& session)
{
    const auto [below, name] = splitValue(arguments.place.key);
    Place place = {arguments.place.subtree, utf8(below)};
    const Installation installation(session);
    const std::optional<Key> key = Key::find(place.path(installation));
    return key ? key->value(name) : std::nullopt;
}

void get(Session& session)
{
    const std::string told = arguments.place.told();
    if (!arguments.type.empty()) {
        arguments.type = chosen(arguments.type, {"double", "hex"}, "form");
    }
    const std::optional<Value> value = find(session);
    if (!value && arguments.otherwise) {
        print(*arguments.otherwise);
    } else if (!value) {
        arguments.place.notFound();
    } else if (typeName(*value).empty()) {
        throw Failure(told + ": stored with another type");
    } else if (arguments.json) {
        printJson(toJson(*value));
    } else {
        print(arguments.type.empty()       ? dataText(*value)
              : arguments.type == "double" ? asDouble(*value, told)
                                           : asHex(*value, told));
    }
}

} // namespace

Command getCommand()
{
    std::vector<Parameter> parameters = arguments.place.parameters();
    parameters[1] = {"VALUE", "", &arguments.place.key,
                     "a value: its name, with its key before it, / or \\ between them", true};
    parameters.push_back({"--as", "FORM", &arguments.type,
                          "double: the number that eight bytes are; hex: an integer's bits in hexadecimal"});
    parameters.push_back(
        {"--default", "DATA", &arguments.otherwise, "print this when there is no such value"});
    parameters.push_back(jsonFlag(arguments.json));
    return {"get", "Print a value", parameters, "", get};
}
