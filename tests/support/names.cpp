#include "support/imports.h"

#include <string>

namespace testing_support {

bool isNameOf(std::string_view symbol, std::string_view function)
{
    const std::size_t colons = function.find("::");
    const bool isMember = colons != std::string_view::npos;
    const std::string type(isMember ? function.substr(0, colons) : "");
    const std::string name(isMember ? function.substr(colons + 2) : function);
    const bool isDestructor = name[0] == '~';
#ifdef _MSC_VER
    const std::string start =
        '?' + (isDestructor ? "?1" : name + '@') + (isMember ? type + '@' : std::string()) + '@';
#else
    const auto counted = [](const std::string& part) { return std::to_string(part.size()) + part; };
    const std::string start =
        isMember ? "_ZN" + counted(type) + (isDestructor ? "D1" : counted(name)) + 'E' : "_Z" + counted(name);
#endif
    return symbol == function || symbol.starts_with(start);
}

} // namespace testing_support
