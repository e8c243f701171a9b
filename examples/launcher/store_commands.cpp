#include "store_commands.h"

#include "names.h"
#include "print.h"

#include <charconv>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace {

using Error = TarvoConfig::Error;

/// The number that the whole text is, if any.
template <typename Number, typename... Base>
std::optional<Number> parseNumber(std::string_view text, Base... base)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base...);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> parseHex(std::string_view text)
{
    if (text.size() % 2 != 0) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes;
    for (; !text.empty(); text.remove_prefix(2)) {
        const auto byte = parseNumber<std::uint8_t>(text.substr(0, 2), 16);
        if (!byte) {
            return std::nullopt;
        }
        bytes.push_back(*byte);
    }
    return bytes;
}

/// False for a text that is no value of that type.
bool parseValue(VelaVariant::VarType type, const wchar_t* word, VelaVariant& value)
{
    const std::string text = utf8(word);
    switch (type) {
    case VelaVariant::eNull:
        break;
    case VelaVariant::eInt:
        if (const auto number = parseNumber<std::int32_t>(text)) {
            value.setInt(*number);
        }
        break;
    case VelaVariant::eInt64:
        if (const auto number = parseNumber<std::int64_t>(text)) {
            value.setInt64(*number);
        }
        break;
    case VelaVariant::eDouble:
        if (const auto number = parseNumber<double>(text)) {
            value.setDouble(*number);
        }
        break;
    case VelaVariant::eBinary:
        if (const auto bytes = parseHex(text)) {
            value.setBinary(bytes->data(), static_cast<std::int32_t>(bytes->size()));
        }
        break;
    case VelaVariant::eString:
        value.setString(word);
        break;
    }
    return value.type() != VelaVariant::eNull;
}

Error get(TarvoConfig::Path path, const wchar_t* valuePath)
{
    VelaVariant value;
    const Error error = velaConfig()->getValue(path, valuePath, value);
    if (error == TarvoConfig::eOk) {
        std::cout << describe(value) << '\n';
    }
    return error;
}

/// A key's or value's name as it is shown.
std::string shownName(Error error, const wchar_t* name)
{
    if (error != TarvoConfig::eOk) {
        return "(name too long)";
    }
    return *name != 0 ? utf8(name) : "(default)";
}

constexpr long nameCapacity = 1024; // longer names are never handed out

/// Runs use(name, shown name) on each sub-key of a key.
template <typename Use>
Error forEachItem(TarvoConfig::Path path, const wchar_t* subKey, Use use)
{
    TarvoConfig::ItemIterator items;
    Error error = velaConfig()->findItem(path, subKey, items);
    if (error != TarvoConfig::eOk) {
        return error;
    }
    wchar_t name[nameCapacity];
    do {
        long length = nameCapacity;
        error = items.name(name, length);
        if (error == TarvoConfig::eInvalidIterator) {
            break; // the key is empty, or has shrunk
        }
        use(name, shownName(error, name));
    } while (items.step() == TarvoConfig::eOk); // a key that has grown ends there
    return TarvoConfig::eOk;
}

Error listValues(TarvoConfig::Path path, const wchar_t* subKey, const std::string& indent)
{
    TarvoConfig::ValueIterator values;
    Error error = velaConfig()->findItem(path, subKey, values);
    if (error != TarvoConfig::eOk) {
        return error;
    }
    do {
        wchar_t name[nameCapacity];
        long length = nameCapacity;
        error = values.key(name, length);
        if (error == TarvoConfig::eInvalidIterator) {
            break;
        }
        VelaVariant value;
        const Error read = values.value(value);
        printLine(indent + "value " + shownName(error, name),
                  read == TarvoConfig::eOk ? describe(value) : std::string(errorName(read)));
    } while (values.step() == TarvoConfig::eOk);
    return TarvoConfig::eOk;
}

Error list(TarvoConfig::Path path, const wchar_t* subKey)
{
    const Error error =
        forEachItem(path, subKey, [](const wchar_t*, const std::string& shown) { printLine("key", shown); });
    return error == TarvoConfig::eOk ? listValues(path, subKey, "") : error;
}

/// Shows the values of a key and, a step further in, every key below it. subKey is terminated.
Error showTree(TarvoConfig::Path path, const std::vector<wchar_t>& subKey, const std::string& indent)
{
    const Error error = listValues(path, subKey.data(), indent);
    if (error != TarvoConfig::eOk) {
        return error;
    }
    return forEachItem(path, subKey.data(), [&](const wchar_t* name, const std::string& shown) {
        printLine(indent + "key", shown);
        std::vector<wchar_t> child(subKey.begin(), subKey.end() - 1);
        child.push_back(L'\\');
        for (; *name != 0; ++name) {
            child.push_back(*name);
        }
        child.push_back(0);
        showTree(path, child, indent + "  ");
    });
}

Command parseSet(TarvoConfig::Path path, const wchar_t* valuePath, const wchar_t* typeWord,
                 const wchar_t* valueWord)
{
    const NamedType* const type = findType(utf8(typeWord));
    VelaVariant value;
    if (type == nullptr || !parseValue(type->type, valueWord, value)) {
        return {};
    }
    return [path, valuePath, value] { return velaConfig()->setValue(path, valuePath, value); };
}

} // namespace

Command parseStoreCommand(std::string_view name, Words arguments)
{
    const NamedPath* const named = arguments.empty() ? nullptr : findPath(utf8(arguments[0]));
    if (named == nullptr) {
        return {};
    }
    const TarvoConfig::Path path = named->path;
    if (name == "get" && arguments.size() == 2) {
        return [path, valuePath = arguments[1]] { return get(path, valuePath); };
    }
    if (name == "set" && arguments.size() == 4) {
        return parseSet(path, arguments[1], arguments[2], arguments[3]);
    }
    if (name == "list" && arguments.size() <= 2) {
        const wchar_t* const subKey = arguments.size() == 2 ? arguments[1] : nullptr;
        return [path, subKey] { return list(path, subKey); };
    }
    if (name == "tree" && arguments.size() == 1) {
        return [path] { return showTree(path, {0}, ""); };
    }
    return {};
}
