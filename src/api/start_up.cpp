// Creates the current user's product tree and records what is current at each of its levels.
#include "installation/layout.h"
#include "installation/names.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <windows.h>

namespace {

VelaVariant textValue(const wchar_t* text)
{
    VelaVariant value;
    value.setString(text);
    return value;
}

void recordCurrentProduct(const TarvoConfig& config)
{
    uinfo::PathBuffer companyRoot;
    if (!uinfo::appendCompanyRoot(companyRoot, config.companyName())) {
        return;
    }
    const uinfo::RegistryKey key = uinfo::RegistryKey::open(HKEY_CURRENT_USER, companyRoot.text(), KEY_WRITE);
    if (key) {
        key.setString(uinfo::currentProductValue, config.productName());
    }
}

/// The profile that is named already, else the one of start-up, of whatever length.
VelaVariant currentProfile(const TarvoConfig& config)
{
    wchar_t stored[uinfo::provisionedProfileCapacity];
    unsigned long size = uinfo::provisionedProfileCapacity;
    return textValue(GetCurrentProfileName(stored, size) != 0 ? stored : config.profileNameCmdLineInfo());
}

} // namespace

TarvoConfig::Error CreateConfigReg()
{
    TarvoConfig& config = *velaConfig();
    const bool existed = config.isItemExist(TarvoConfig::eProductRoot, nullptr) != 0;
    config.addValue(TarvoConfig::eProductRoot, nullptr, uinfo::currentVersionValue,
                    textValue(GetVelaProgramVersionString()));
    if (!existed) {
        recordCurrentProduct(config);
    }
    if (config.isItemExist(TarvoConfig::eProductRoot, nullptr) == 0) {
        return TarvoConfig::eRegistryError;
    }
    config.addValue(TarvoConfig::eVersionRoot, nullptr, uinfo::currentLanguageValue,
                    textValue(GetCurrentLanguageShortName()));
    config.setValue(TarvoConfig::eProfilesRoot, L"", currentProfile(config));
    return TarvoConfig::eOk;
}
