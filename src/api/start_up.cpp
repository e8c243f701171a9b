// Start-up: access to the two process-wide objects, and creation of the user's tree.
#include "config/access.h"
#include "installation/layout.h"
#include "installation/names.h"
#include "platform/registry_key.h"
#include "platform/text.h"
#include "product/product.h"

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

/// Returns the stored profile name or, if that cannot be read, the profile name that start-up chose.
VelaVariant currentProfile(const TarvoConfig& config)
{
    wchar_t stored[uinfo::provisionedProfileCapacity];
    unsigned long size = uinfo::provisionedProfileCapacity;
    return textValue(GetCurrentProfileName(stored, size) != 0 ? stored : config.profileNameCmdLineInfo());
}

} // namespace

TarvoConfig* velaConfig()
{
    return &uinfo::ConfigAccess::instance();
}

TarvoConfig::Error InitVelaConfig(const wchar_t* company, const wchar_t* product, const wchar_t* language,
                                  const wchar_t* profile)
{
    return velaConfig()->initial(company, product, language, profile);
}

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

ITarvoProduct* velaGetProduct()
{
    return &uinfo::theProduct();
}
