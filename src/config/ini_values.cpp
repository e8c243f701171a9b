// The product's INI files: what start-up reads of them, and typed values.
#include "installation/ini_files.h"
#include "installation/names.h"
#include "installation/program_files.h"
#include "platform/text.h"
#include "platform/text_cache.h"

#include <RkUInfo.h>

namespace {

/// The architecture command name prefix, empty until both its numbers could be read.
wchar_t architecturePrefix[64];

} // namespace

TarvoConfig::Error TarvoConfig::getIniFilePath(wchar_t* out, const wchar_t* fileName)
{
    if (out == nullptr) {
        return eInvalidInput;
    }
    uinfo::BoundedText path(out, uinfo::pathCapacity);
    return uinfo::iniFilePath(uinfo::programFolder(), fileName, path) ? eOk : eInvalidInput;
}

TarvoConfig::Error TarvoConfig::readIniString(const wchar_t* section, const wchar_t* key, wchar_t* out,
                                              unsigned long outChars, const wchar_t* fileName)
{
    return uinfo::readIniText(uinfo::programFolder(), section, key, out, outChars, fileName);
}

TarvoConfig::Error TarvoConfig::readIniInt(const wchar_t* section, const wchar_t* key, long& out,
                                           const wchar_t* fileName)
{
    return uinfo::readIniNumber(uinfo::programFolder(), section, key, out, fileName);
}

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
        wchar_t text[uinfo::iniTextCapacity];
        const Error error = readIniString(section, key, text, uinfo::iniTextCapacity, fileName);
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
    return uinfo::cachedText(architecturePrefix, [](uinfo::BoundedText& prefix) {
        return uinfo::readCommandPrefix(uinfo::programFolder(), prefix);
    });
}
