#include "api/stored_path.h"

#include "installation/layout.h"

#include <RkUInfo.h>

bool uinfo::copyStoredText(TarvoConfig::Path path, const wchar_t* valuePath, wchar_t* buffer,
                           unsigned long& length)
{
    length = 0;
    if (buffer == nullptr) {
        return true;
    }
    BoundedText text(buffer, pathCapacity);
    VelaVariant stored;
    const TarvoConfig::Error read = velaConfig()->getValue(path, valuePath, stored);
    const bool isStored = assignStoredPath(text, read, stored);
    length = static_cast<unsigned long>(text.length());
    return isStored;
}
