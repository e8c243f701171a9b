// Where the named subtrees of the registry tree lie.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

class RegistryLayout
{
public:
    /// Appends a subtree's key path to an empty text; see TarvoConfig::getRegRootPath for when it is false.
    static bool appendRoot(const TarvoConfig& config, TarvoConfig::Path path, BoundedText& key);
};

} // namespace uinfo
