// Current profile.
#include "api/stored_path.h"
#include "installation/names.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <algorithm>

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
