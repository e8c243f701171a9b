#include "locations/stored_text.h"

#include "platform/text.h"

#include <RkUInfo.h>

bool uinfo::copyStoredText(TarvoConfig::Path path, const wchar_t* valuePath, wchar_t* buffer,
                           unsigned long& length)
{
    length = 0;
    if (buffer == nullptr) {
        return true;
    }
    BoundedText text(buffer, longestStoredPath + 1);
    VelaVariant stored;
    if (velaConfig()->getValue(path, valuePath, stored) != TarvoConfig::eOk) {
        return false;
    }
    text.append(stored.getString()); // empty for any other type
    length = static_cast<unsigned long>(text.length());
    return true;
}
