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
} getArguments;

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
    const auto [below, name] = splitValue(getArguments.place.key);
    Place place = {getArguments.place.subtree, utf8(below)};
    const Installation installation(session);
    const std::optional<Key> key = Key::find(place.path(installation));
    return key ? key->value(name) : std::nullopt;
}

void get(Session& session)
{
    const std::string told = getArguments.place.told();
    if (!getArguments.type.empty()) {
        getArguments.type = chosen(getArguments.type, {"double", "hex"}, "form");
    }
    const std::optional<Value> value = find(session);
    if (!value && getArguments.otherwise) {
        print(*getArguments.otherwise);
    } else if (!value) {
        getArguments.place.notFound();
    } else if (typeName(*value).empty()) {
        throw Failure(told + ": stored with another type");
    } else if (getArguments.json) {
        printJson(toJson(*value));
    } else {
        print(getArguments.type.empty()       ? dataText(*value)
              : getArguments.type == "double" ? asDouble(*value, told)
                                              : asHex(*value, told));
    }
}

} // namespace

Command getCommand()
{
    std::vector<Parameter> parameters = getArguments.place.parameters();
    parameters[1] = {"VALUE", "", &getArguments.place.key,
                     "a value: its name, with its key before it, / or \\ between them", true};
    parameters.push_back({"--as", "FORM", &getArguments.type,
                          "double: the number that eight bytes are; hex: an integer's bits in hexadecimal"});
    parameters.push_back(
        {"--default", "DATA", &getArguments.otherwise, "print this when there is no such value"});
    parameters.push_back(jsonFlag(getArguments.json));
    return {"get", "Print a value", parameters, "", get};
}
