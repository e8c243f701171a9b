// Functions by their names in the source, whichever compiler wrote them into a module.
#pragma once

#include <string_view>

namespace testing_support {

/// Whether a module's symbol is a function ("velaConfig", "RkLocker::lock", "RkLocker::~RkLocker"), whatever
/// its arguments, or has that very name, as "malloc" has.
bool isNameOf(std::string_view symbol, std::string_view function);

} // namespace testing_support
