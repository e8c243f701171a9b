// The configuration object with its protected members made public.
#pragma once

#include <RkUInfo.h>

namespace testing_support {

/// A separate configuration object that lets tests call its start-up steps.
class Config : public TarvoConfig
{
public:
    using TarvoConfig::buildRootPathFromCompany, TarvoConfig::buildRootPathFromProduct;
    using TarvoConfig::getCurrentProfileNameFromReg, TarvoConfig::initProfileName;
    using TarvoConfig::getIniFilePath, TarvoConfig::readIniInt, TarvoConfig::readIniString;
    using TarvoConfig::initCompanyName, TarvoConfig::initProductName, TarvoConfig::initLanguageName;
    using TarvoConfig::isLangFolderExist, TarvoConfig::isLangGuidExist, TarvoConfig::isLanguageExist;
    using TarvoConfig::queryAInstalledLangInOrder, TarvoConfig::verifyResourcePath;
    using TarvoConfig::refreshLanguageName, TarvoConfig::refreshProductName;
};

/// Starts as the rebranded product Acme Widget, whose languages need no uninstall entries. The language's key
/// path is Software\Acme\Widget\2018\en-US.
inline TarvoConfig::Error startAcme(const wchar_t* profile = nullptr)
{
    return InitVelaConfig(L"Acme", L"Widget", L"en-US", profile);
}

} // namespace testing_support
