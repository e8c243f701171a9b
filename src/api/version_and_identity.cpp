// Version and identity.
#include "installation/build_facts.h"
#include "platform/executable.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <algorithm>

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

const wchar_t* lastOf(wchar_t character, const wchar_t* text)
{
    const wchar_t* at = text + uinfo::length(text);
    while (at > text && *at != character) {
        --at;
    }
    return *at == character ? at : nullptr;
}

} // namespace

const wchar_t* GetVelaProgramVersionString()
{
    return velaGetProduct()->programVersionString();
}

unsigned long GetVelaProgramPath(wchar_t* const buffer)
{
    return GetProgramPath(buffer, uinfo::modulePathCapacity);
}

unsigned long GetVelaProgramName(wchar_t* const buffer)
{
    if (buffer == nullptr || !uinfo::executablePath(buffer, uinfo::modulePathCapacity) || *buffer == 0) {
        return 0;
    }
    const wchar_t* separator = lastOf(L'\\', buffer);
    if (separator == nullptr) {
        separator = lastOf(L'/', buffer);
    }
    if (separator == nullptr) {
        return static_cast<unsigned long>(uinfo::length(buffer));
    }
    const wchar_t* const name = separator + 1;
    const wchar_t* const dot = lastOf(L'.', name);
    const auto nameLength = dot != nullptr ? static_cast<std::size_t>(dot - name) : uinfo::length(name);
    std::copy_n(name, nameLength, buffer);
    buffer[nameLength] = 0;
    return static_cast<unsigned long>(nameLength);
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
