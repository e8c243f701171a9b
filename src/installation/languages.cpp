#include "installation/languages.h"

#include "platform/text.h"

std::int32_t uinfo::findLanguage(const wchar_t* shortName)
{
    for (std::int32_t index = 0; index < languageCount; ++index) {
        if (equalIgnoringCase(shortName, languages[index].shortName)) {
            return index;
        }
    }
    return unknownLanguage;
}
