#include "support/imports.h"

#include <string>

namespace testing_support {

bool isNameOf(std::string_view symbol, std::string_view function)
{
    const std::string type(function.substr(0, function.find(':')));
    const std::string name(function.substr(function.rfind(':') + 1));
    const bool isMember = name.size() < function.size();
#ifdef _MSC_VER
    const std::string start = '?' + name + '@' + (isMember ? type + "@@" : "@");
#else
    const auto counted = [](const std::string& part) { return std::to_string(part.size()) + part; };
    const std::string start = isMember ? "_ZN" + counted(type) + counted(name) + 'E' : "_Z" + counted(name);
#endif
    return symbol == function || symbol.starts_with(start);
}

} // namespace testing_support
