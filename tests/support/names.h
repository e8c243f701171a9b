// Functions by their names in the source, whichever compiler wrote them into a module.
#pragma once

#include <string>
#include <string_view>

namespace testing_support {

/// The start, up to the arguments, of the name that this compiler gives to a function, a member function or a
/// destructor: "velaConfig", "RkLocker::lock", "RkLocker::~RkLocker".
std::string startOfName(std::string_view function);

/// Whether a module's symbol is that function, or has that very name, as "malloc" has.
bool isNameOf(std::string_view symbol, std::string_view function);

} // namespace testing_support
