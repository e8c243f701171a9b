// Version and identity.
#include "installation/build_facts.h"
#include "platform/text.h"

#include <RkUInfo.h>

namespace {

void writeVersion(wchar_t* buffer, unsigned long size, bool withPrefix, const wchar_t* version)
{
    if (buffer == nullptr || size == 0) {
        return;
    }
    uinfo::BoundedText line(buffer, size);
    const bool fits = withPrefix ? line.append(L"VERNUM = \"") && line.append(version) && line.append(L"\"")
                                 : line.append(version);
    if (!fits) {
        line.cut(0);
    }
}

} // namespace

const wchar_t* GetVelaProgramVersionString()
{
    return velaGetProduct()->programVersionString();
}

long GetVelaLanguageIdByShortName(const wchar_t* shortName)
{
    return uinfo::isEmpty(shortName) ? 0 : TarvoLanguage(shortName).velaLanguage();
}

long GetCurrentVelaLanguageId()
{
    return velaConfig()->language().velaLanguage();
}

const wchar_t* GetCurrentProductName()
{
    return velaConfig()->productName();
}

void GetVerNum(wchar_t* buffer, unsigned long size, bool withPrefix)
{
    writeVersion(buffer, size, withPrefix, L"" RKUINFO_BUILD_STAMP);
}

void GetResVerNum(wchar_t* buffer, unsigned long size, bool withPrefix)
{
    writeVersion(buffer, size, withPrefix, L"");
}

const wchar_t* GetServicePackageVersionString()
{
    return L"" RKUINFO_SERVICE_PACK;
}
