// Registry key paths.
#include "installation/layout.h"
#include "platform/text.h"

#include <RkUInfo.h>

namespace {

unsigned long keyPath(TarvoConfig::Path path, wchar_t* buffer)
{
    velaConfig()->getRegRootPath(path, buffer);
    return static_cast<unsigned long>(uinfo::length(buffer));
}

} // namespace

unsigned long GetRegistryProductNameRootKey(wchar_t* const buffer)
{
    return keyPath(TarvoConfig::eProductRoot, buffer);
}

unsigned long GetRegistryVersionRootKey(wchar_t* const buffer)
{
    return keyPath(TarvoConfig::eVersionRoot, buffer);
}

unsigned long GetVelaRegistryLanguageRootKey(wchar_t* const buffer)
{
    return keyPath(TarvoConfig::eLanguageRoot, buffer);
}

unsigned long GetRegistryProfilesRootKey(wchar_t* const buffer)
{
    return keyPath(TarvoConfig::eProfilesRoot, buffer);
}

unsigned long GetVelaRegistryCurrentProfileRootKey(wchar_t* const buffer)
{
    return keyPath(TarvoConfig::eCurrentProfile, buffer);
}

unsigned long GetVelaRegistryCurrentProfileConfigRootKey(wchar_t* const buffer)
{
    if (keyPath(TarvoConfig::eCurrentProfile, buffer) == 0) {
        return 0;
    }
    uinfo::BoundedText path = uinfo::BoundedText::appendingTo(buffer, uinfo::pathCapacity);
    return uinfo::appendProfileConfig(path) ? static_cast<unsigned long>(path.length()) : 0;
}
