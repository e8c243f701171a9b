// INI values.
#include "installation/ini_files.h"
#include "installation/names.h"
#include "installation/program_files.h"
#include "platform/text_cache.h"

#include <RkUInfo.h>

namespace {

/// The cached command prefix; empty until it has been read successfully.
wchar_t architecturePrefix[64];

} // namespace

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
