// The configuration object as a test sees it.
#pragma once

#include <RkUInfo.h>

namespace testing_support {

/// A configuration object of the test's own, with the steps of start-up opened up.
class Config : public TarvoConfig
{
public:
    Config() = default;

    using TarvoConfig::buildRootPathFromCompany;
    using TarvoConfig::buildRootPathFromProduct;
    using TarvoConfig::getCurrentProfileNameFromReg;
    using TarvoConfig::getIniFilePath;
    using TarvoConfig::initCompanyName;
    using TarvoConfig::initLanguageName;
    using TarvoConfig::initProductName;
    using TarvoConfig::initProfileName;
    using TarvoConfig::isLangFolderExist;
    using TarvoConfig::isLangGuidExist;
    using TarvoConfig::isLanguageExist;
    using TarvoConfig::queryAInstalledLangInOrder;
    using TarvoConfig::readIniInt;
    using TarvoConfig::readIniString;
    using TarvoConfig::refreshLanguageName;
    using TarvoConfig::refreshProductName;
    using TarvoConfig::verifyResourcePath;
};

/// Starts the process's configuration as a rebranded product, whose languages need no uninstall entry: the
/// key path of its language is Software\Acme\Widget\2018\en-US.
inline TarvoConfig::Error startAcme(const wchar_t* profile = nullptr)
{
    return InitVelaConfig(L"Acme", L"Widget", L"en-US", profile);
}

} // namespace testing_support
