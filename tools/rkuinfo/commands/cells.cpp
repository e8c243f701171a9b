#include "commands/cells.h"

std::string shownName(const Value& value)
{
    return value.name.empty() ? "(default)" : shown(value.name);
}

std::vector<Cell> valueRow(std::vector<Cell> names, const Value& value)
{
    const std::string type(typeName(value));
    names.push_back({type.empty() ? "?" : type, Style::quiet});
    names.push_back({type.empty()       ? "stored with another type"
                     : type == "string" ? shown(textOf(value))
                                        : dataText(value),
                     type.empty() ? Style::quiet : Style::plain});
    return names;
}

std::vector<Cell> keyRow(std::vector<Cell> names)
{
    names.push_back({"key", Style::quiet});
    names.push_back({""});
    return names;
}
