// Registry key paths, and the current profile's name and custom resource file.
#include "api/stored_path.h"
#include "installation/layout.h"
#include "installation/names.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <algorithm>

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
    uinfo::BoundedText path = uinfo::BoundedText::behind(buffer, uinfo::pathCapacity);
    return uinfo::appendProfileConfig(path) ? static_cast<unsigned long>(path.length()) : 0;
}

unsigned long GetCurrentProfileName(wchar_t* buffer, unsigned long& size)
{
    VelaVariant stored;
    if (velaConfig()->getValue(TarvoConfig::eProfilesRoot, nullptr, stored) != TarvoConfig::eOk ||
        stored.type() != VelaVariant::eString) {
        size = 0;
        return 0;
    }
    const std::size_t nameLength = uinfo::length(stored.getString());
    if (buffer == nullptr || size < nameLength + 1) {
        size = static_cast<unsigned long>(nameLength + 1);
        return 0;
    }
    std::copy_n(stored.getString(), nameLength + 1, buffer);
    return static_cast<unsigned long>(nameLength);
}

unsigned long GetCustomResFileName(wchar_t* const buffer)
{
    unsigned long written = 0;
    uinfo::copyStoredText(TarvoConfig::eCurrentProfile, uinfo::customResourcesValue, buffer, written);
    return written;
}
