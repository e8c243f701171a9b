#include "report.h"

#include "names.h"
#include "print.h"

#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr unsigned long pathCapacity = 1024;

/// A function that fills a buffer of 1024 characters and gives the text's length, 0 when it failed.
using TextGetter = unsigned long (*)(wchar_t* buffer);

struct NamedGetter
{
    const char* name;
    TextGetter get;
};

void printTexts(std::initializer_list<NamedGetter> getters)
{
    for (const NamedGetter& getter : getters) {
        wchar_t text[pathCapacity] = {};
        printLine(getter.name, getter.get(text) > 0 ? text : nullptr);
    }
}

unsigned long programFolder(wchar_t* buffer)
{
    return GetProgramPath(buffer, pathCapacity);
}

unsigned long resourceFolder(wchar_t* buffer)
{
    return GetResourceDllPath(buffer, pathCapacity);
}

unsigned long commonResourceFolder(wchar_t* buffer)
{
    return GetResourceDllPath(L"Common", buffer, pathCapacity);
}

unsigned long helpViewer(wchar_t* buffer)
{
    return static_cast<unsigned long>(GetHelpFilePath(buffer, static_cast<long>(pathCapacity)));
}

void printIdentity()
{
    const TarvoConfig& config = *velaConfig();
    printLine("company", config.companyName());
    printLine("product", config.productName());
    printLine("language", config.language().shortName());
    printLine("language name", config.language().globalName());
    printLine("local name", config.language().localName());
    printLine("LCID", config.language().velaLanguage());
    printLine("start-up profile", config.profileNameCmdLineInfo());
    for (const NamedPath& named : allPaths()) {
        wchar_t keyPath[pathCapacity];
        config.getRegRootPath(named.path, keyPath);
        printLine("key " + std::string(named.name), keyPath);
    }
    printTexts({{"program folder", programFolder},
                {"resource folder", resourceFolder},
                {"help viewer", helpViewer}});
}

void printVersion()
{
    wchar_t number[64];
    GetVerNum(number, std::size(number), false);
    printLine("GetVerNum", number);
    GetVerNum(number, std::size(number), true);
    printLine("GetVerNum with prefix", number);
    GetResVerNum(number, std::size(number), false);
    printLine("GetResVerNum", number);
    GetResVerNum(number, std::size(number), true);
    printLine("GetResVerNum with prefix", number);
    printLine("GetVelaProgramVersionString", GetVelaProgramVersionString());
    printLine("GetServicePackageVersionString", GetServicePackageVersionString());
    printLine("GetCurrentProductName", GetCurrentProductName());
    printTexts({{"GetVelaProgramPath", GetVelaProgramPath}, {"GetVelaProgramName", GetVelaProgramName}});
}

void printLanguage()
{
    printLine("GetCurrentLanguageShortName", GetCurrentLanguageShortName());
    printLine("GetCurrentLanguageGlobalName", GetCurrentLanguageGlobalName());
    printLine("GetCurrentLanguageLocalName", GetCurrentLanguageLocalName());
    printLine("GetCurrentVelaLanguageId", GetCurrentVelaLanguageId());
    printLine("GetVelaLanguageIdByShortName de-DE", GetVelaLanguageIdByShortName(L"de-DE"));
    printTexts({{"GetResourceDllPath Common", commonResourceFolder}});
    // Both handles stay open: an application keeps its resources while it runs.
    constexpr const wchar_t* library = L"RkUInfoRes.dll";
    printLine("LoadResourceDll", LoadResourceDll(library) != nullptr ? "loaded" : "");
    printLine("LoadResourceDllEx", LoadResourceDllEx(library, nullptr, 0) != nullptr ? "loaded" : "");
}

void printProduct()
{
    ITarvoProduct& product = *velaGetProduct();
    printLine("productName", product.productName());
    printLine("defaultProductName", product.defaultProductName());
    printLine("companyName", product.companyName());
    printLine("programVersionString", product.programVersionString());
    printLine("helpFilePath", product.helpFilePath());
    printLine("product language", product.language().shortName());
    printLine("productType", product.productType());
    printLine("productNumber", product.productNumber());
    printLine("productFlagA", product.productFlagA());
    printLine("productFlagB", product.productFlagB());
    printLine("productVersionTag", product.productVersionTag());
    printLine("userDataCachePath", product.userDataCachePath());
    printLine("getSharedValueA", product.getSharedValueA());
    printLine("getSharedValueB", product.getSharedValueB());
    printLine("getSharedValueC", product.getSharedValueC());
}

void printUserFolders()
{
    printTexts({
        {"GetUserApplicationDataPath", GetUserApplicationDataPath},
        {"GetUserApplicationDataComanyPath", GetUserApplicationDataComanyPath},
        {"GetUserApplicationDataProductPath", GetUserApplicationDataProductPath},
        {"GetUserApplicationDataVersionPath", GetUserApplicationDataVersionPath},
        {"GetUserApplicationDataLanguagePath", GetUserApplicationDataLanguagePath},
        {"GetUserApplicationDataSupportPath", GetUserApplicationDataSupportPath},
        {"GetUserApplicationDataPlottersPath", GetUserApplicationDataPlottersPath},
        {"GetUserApplicationDataCrashReportPath", GetUserApplicationDataCrashReportPath},
        {"GetUserApplicationDataPrintstylePath", GetUserApplicationDataPrintstylePath},
        {"GetUserLocalApplicationDataPath", GetUserLocalApplicationDataPath},
        {"GetUserLocalApplicationDataComanyPath", GetUserLocalApplicationDataComanyPath},
        {"GetUserLocalApplicationDataProductPath", GetUserLocalApplicationDataProductPath},
        {"GetUserLocalApplicationDataVersionPath", GetUserLocalApplicationDataVersionPath},
        {"GetUserLocalApplicationDataLanguagePath", GetUserLocalApplicationDataLanguagePath},
        {"GetUserLocalApplicationDataTemplatePath", GetUserLocalApplicationDataTemplatePath},
    });
}

/// Asks for the size first, since a profile's name may have any length.
void printCurrentProfileName()
{
    unsigned long size = 0;
    GetCurrentProfileName(nullptr, size);
    std::vector<wchar_t> name(size);
    const bool known = size > 0 && GetCurrentProfileName(name.data(), size) > 0;
    printLine("GetCurrentProfileName", known ? name.data() : nullptr);
}

void printRegistry()
{
    printTexts({
        {"GetRegistryProductNameRootKey", GetRegistryProductNameRootKey},
        {"GetRegistryVersionRootKey", GetRegistryVersionRootKey},
        {"GetVelaRegistryLanguageRootKey", GetVelaRegistryLanguageRootKey},
        {"GetRegistryProfilesRootKey", GetRegistryProfilesRootKey},
        {"GetVelaRegistryCurrentProfileRootKey", GetVelaRegistryCurrentProfileRootKey},
        {"GetVelaRegistryCurrentProfileConfigRootKey", GetVelaRegistryCurrentProfileConfigRootKey},
        {"GetCustomResFileName", GetCustomResFileName},
        {"GetVelaUIStyleConfigFilePath", GetVelaUIStyleConfigFilePath},
        {"GetVelaUserDataCacheLanPath", GetVelaUserDataCacheLanPath},
    });
    printLine("GetVelaUserDataCachePath", GetVelaUserDataCachePath());
    printCurrentProfileName();
}

void printIniValues()
{
    VelaVariant locale;
    const bool found = GetVelaIniConfigValue(L"Product", L"LocaleId", locale, VelaVariant::eInt) != 0;
    printLine("GetVelaIniConfigValue LocaleId", found ? describe(locale) : "");
    printLine("GetVelaIniOEMMergeTitleValue", GetVelaIniOEMMergeTitleValue(-1));
    printLine("GetVelaArchitectrueCommandNamePrefix", GetVelaArchitectrueCommandNamePrefix());
}

} // namespace

TarvoConfig::Error report()
{
    printLine("result", errorName(TarvoConfig::eOk)); // start-up's: without it there is no report
    printIdentity();
    printVersion();
    printLanguage();
    printProduct();
    printUserFolders();
    printRegistry();
    printIniValues();
    return TarvoConfig::eOk;
}
