// Typed values of the product's INI files.
#include "config/names.h"
#include "platform/text.h"
#include "platform/text_cache.h"

#include <RkUInfo.h>

namespace {

constexpr unsigned long iniTextCapacity = 1023; // of which 1021 characters come back

/// The architecture command name prefix, empty until both its numbers could be read.
wchar_t architecturePrefix[64];

bool readProductNumber(const wchar_t* key, VelaVariant& number)
{
    return velaConfig()->getIniValue(uinfo::productSection, key, number, VelaVariant::eInt,
                                     uinfo::productIni) == TarvoConfig::eOk;
}

bool buildArchitecturePrefix(uinfo::BoundedText& prefix)
{
    VelaVariant number;
    if (!readProductNumber(L"MajorVer", number)) {
        return false;
    }
    prefix.append(L"S");
    prefix.appendNumber(number.getInt());
    if (!readProductNumber(L"ProductId", number)) {
        return false;
    }
    prefix.appendNumber(number.getInt());
    return prefix.append(L"_");
}

} // namespace

TarvoConfig::Error TarvoConfig::getIniValue(const wchar_t* section, const wchar_t* key, VelaVariant& value,
                                            VelaVariant::VarType type, const wchar_t* fileName)
{
    if (uinfo::isEmpty(section) || uinfo::isEmpty(key)) {
        return eNotFound;
    }
    if (type == VelaVariant::eInt) {
        long number = 0;
        const Error error = readIniInt(section, key, number, fileName);
        if (error == eOk) {
            value.setInt(static_cast<std::int32_t>(number));
        }
        return error;
    }
    if (type == VelaVariant::eString) {
        wchar_t text[iniTextCapacity + 1];
        const Error error = readIniString(section, key, text, iniTextCapacity, fileName);
        if (error == eOk) {
            value.setString(text);
        }
        return error;
    }
    return eWrongType;
}

int GetVelaIniConfigValue(const wchar_t* section, const wchar_t* key, VelaVariant& value,
                          VelaVariant::VarType type)
{
    return velaConfig()->getIniValue(section, key, value, type, uinfo::tarvoIni) == TarvoConfig::eOk ? 1 : 0;
}

long GetVelaIniOEMMergeTitleValue(long defaultValue)
{
    VelaVariant value;
    const bool read = GetVelaIniConfigValue(L"PartnerOEM", L"MergeTitle", value, VelaVariant::eInt) != 0;
    return read ? value.getInt() : defaultValue;
}

const wchar_t* GetVelaArchitectrueCommandNamePrefix()
{
    return uinfo::cachedText(architecturePrefix, buildArchitecturePrefix);
}
