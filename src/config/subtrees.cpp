// The named subtrees of the registry tree.
#include "config/access.h"

#include "installation/layout.h"
#include "platform/text.h"

#include <RkUInfo.h>

using uinfo::BoundedText;

bool uinfo::ConfigAccess::appendRoot(const TarvoConfig& config, TarvoConfig::Path path, BoundedText& key)
{
    if (config.m_initialized == 0) {
        return false;
    }
    const RegistryNames names = {config.m_rootPath, config.m_versionRootPath, config.m_language.shortName()};
    if (path != TarvoConfig::eCurrentProfile) {
        return appendSubtree(key, path, names);
    }
    wchar_t profile[profileCapacity];
    return appendSubtree(key, TarvoConfig::eProfilesRoot, names) &&
           config.getCurrentProfileNameFromReg(profile, key.text()) == TarvoConfig::eOk &&
           appendProfile(key, profile);
}

void TarvoConfig::getRegRootPath(Path path, wchar_t* const out) const
{
    if (out == nullptr) {
        return;
    }
    BoundedText key(out, uinfo::pathCapacity);
    if (!uinfo::ConfigAccess::appendRoot(*this, path, key)) {
        key.cut(0);
    }
}
