// Gives the library's other files access to the configuration object.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

class ConfigAccess
{
public:
    /// The single instance, which velaConfig() returns.
    static TarvoConfig& instance() { return TarvoConfig::_sg_tarvo_config; }

    /// Stores the key path of a subtree in a string, which must be empty on entry. Returns false on failure;
    /// TarvoConfig::getRegRootPath lists the causes.
    static bool appendRoot(const TarvoConfig& config, TarvoConfig::Path path, BoundedText& key);
};

} // namespace uinfo
