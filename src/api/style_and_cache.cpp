// The paths of the UI style file and of the user data cache.
#include "api/stored_path.h"
#include "installation/layout.h"
#include "installation/names.h"
#include "platform/text.h"

#include <RkUInfo.h>

unsigned long GetVelaUIStyleConfigFilePath(wchar_t* const buffer)
{
    unsigned long stored = 0;
    if (uinfo::copyStoredText(TarvoConfig::eUserConfig, uinfo::styleFileValue, buffer, stored)) {
        return stored;
    }
    if (GetUserApplicationDataSupportPath(buffer) == 0) {
        return 0;
    }
    uinfo::BoundedText path = uinfo::BoundedText::appendingTo(buffer, uinfo::pathCapacity);
    return uinfo::appendStyleFile(path) ? static_cast<unsigned long>(path.length()) : 0;
}

const wchar_t* GetVelaUserDataCachePath()
{
    return velaGetProduct()->userDataCachePath();
}

unsigned long GetVelaUserDataCacheLanPath(wchar_t* const buffer)
{
    if (buffer == nullptr) {
        return 0;
    }
    uinfo::BoundedText path(buffer, uinfo::longestComposedPath + 1);
    const wchar_t* const cache = GetVelaUserDataCachePath();
    if (uinfo::isEmpty(cache) || !path.append(cache) ||
        !path.appendComponent(GetCurrentLanguageShortName())) {
        path.cut(0);
        return 0;
    }
    return static_cast<unsigned long>(path.length());
}
