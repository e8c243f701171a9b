#include "support/names.h"

namespace testing_support {

namespace {

constexpr std::size_t none = std::string_view::npos;

#ifdef _MSC_VER
std::string mangled(const std::string& type, const std::string& function)
{
    const std::string name = function[0] == '~' ? "?1" : function + '@';
    return '?' + name + (type.empty() ? "" : type + '@') + '@';
}
#else
std::string mangled(const std::string& type, const std::string& function)
{
    const auto counted = [](const std::string& name) { return std::to_string(name.size()) + name; };
    return type.empty() ? "_Z" + counted(function)
                        : "_ZN" + counted(type) + (function[0] == '~' ? "D1" : counted(function)) + 'E';
}
#endif

} // namespace

std::string startOfName(std::string_view function)
{
    const std::size_t colons = function.find("::");
    return colons == none
               ? mangled("", std::string(function))
               : mangled(std::string(function.substr(0, colons)), std::string(function.substr(colons + 2)));
}

bool isNameOf(std::string_view symbol, std::string_view function)
{
    return symbol == function || symbol.starts_with(startOfName(function));
}

} // namespace testing_support
