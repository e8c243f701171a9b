// TarvoConfig's functions for INI files.
#include "installation/ini_files.h"
#include "installation/program_files.h"
#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

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
