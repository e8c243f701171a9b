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

    /// Sets key, which must be empty, to the key path of a subtree. Returns false if
    /// TarvoConfig::getRegRootPath would write the empty string.
    static bool appendRoot(const TarvoConfig& config, TarvoConfig::Path path, BoundedText& key);
};

} // namespace uinfo
