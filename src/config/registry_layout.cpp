// The named subtrees of the registry tree, and the current profile.
#include "config/registry_layout.h"

#include "platform/registry_key.h"
#include "platform/text.h"
#include "program/names.h"

#include <RkUInfo.h>

#include <utility>

namespace {

using uinfo::BoundedText;
using uinfo::isEmpty;
using uinfo::pathCapacity;
using uinfo::profileCapacity;
using uinfo::RegistryKey;

bool appendLanguageRoot(BoundedText& key, const wchar_t* versionRoot, const TarvoLanguage& language)
{
    return key.append(versionRoot) && key.appendComponent(language.shortName());
}

} // namespace

bool uinfo::RegistryLayout::appendRoot(const TarvoConfig& config, TarvoConfig::Path path, BoundedText& key)
{
    if (config.m_initialized == 0) {
        return false;
    }
    const auto below = [&]<std::size_t Size>(const wchar_t(&component)[Size]) {
        return appendLanguageRoot(key, config.m_versionRootPath, config.m_language) &&
               key.appendComponent(component, Size - 1);
    };
    switch (path) {
    case TarvoConfig::eProductRoot:
        return key.append(config.m_rootPath);
    case TarvoConfig::eVersionRoot:
        return key.append(config.m_versionRootPath);
    case TarvoConfig::eLanguageRoot:
        return appendLanguageRoot(key, config.m_versionRootPath, config.m_language);
    case TarvoConfig::eProfilesRoot:
        return below(profilesKey);
    case TarvoConfig::eCurrentProfile: {
        wchar_t name[profileCapacity];
        return below(profilesKey) &&
               config.getCurrentProfileNameFromReg(name, key.text()) == TarvoConfig::eOk &&
               key.appendComponent(name);
    }
    case TarvoConfig::eApplications:
        return below(L"Applications");
    case TarvoConfig::eRecentFileList:
        return below(L"Recent File List");
    case TarvoConfig::eSettings:
        return below(L"Settings");
    case TarvoConfig::eUserConfig:
        return below(L"Settings") && key.appendComponent(L"UserConfig");
    }
    return false;
}

void TarvoConfig::getRegRootPath(Path path, wchar_t* const out) const
{
    if (out == nullptr) {
        return;
    }
    BoundedText key(out, pathCapacity);
    if (!uinfo::RegistryLayout::appendRoot(*this, path, key)) {
        key.cut(0);
    }
}

TarvoConfig::Error TarvoConfig::getCurrentProfileNameFromReg(wchar_t* const out,
                                                             const wchar_t* profilesKey) const
{
    if (out == nullptr) {
        return eInvalidInput;
    }
    BoundedText name(out, profileCapacity);
    uinfo::PathBuffer profilesRoot;
    if (isEmpty(profilesKey)) {
        getRegRootPath(eProfilesRoot, profilesRoot.data());
        profilesKey = profilesRoot.text();
        if (isEmpty(profilesKey)) {
            return eInvalidInput;
        }
    }
    const RegistryKey profiles = RegistryKey::open(HKEY_CURRENT_USER, profilesKey, KEY_READ | KEY_WRITE);
    if (!profiles) {
        return eRegistryError;
    }
    DWORD type = REG_NONE; // any stored type is taken
    if (profiles.queryText(nullptr, name, type) && !name.empty()) {
        return eOk;
    }
    name.append(uinfo::defaultProfile);
    return profiles.setString(nullptr, uinfo::defaultProfile) ? eOk : eRegistryError;
}

TarvoConfig::Error TarvoConfig::initProfileName(const wchar_t* profile)
{
    if (isEmpty(profile)) {
        return eOk;
    }
    delete[] std::exchange(m_profileNameCmdLineInfo, uinfo::duplicate(profile));
    profile = m_profileNameCmdLineInfo; // the argument may have been the text released

    uinfo::PathBuffer key; // start-up is not complete, so getRegRootPath has no answer yet
    if (isEmpty(m_versionRootPath) || !appendLanguageRoot(key, m_versionRootPath, m_language) ||
        !key.appendComponent(uinfo::profilesKey)) {
        return eOk;
    }
    const RegistryKey profiles = RegistryKey::open(HKEY_CURRENT_USER, key.text(), KEY_READ | KEY_WRITE);
    uinfo::TextBuffer<uinfo::offeredProfileCapacity> stored;
    if (profiles && profiles.queryString(nullptr, stored) &&
        !uinfo::equalIgnoringCase(stored.text(), profile)) {
        profiles.setString(nullptr, profile);
    }
    return eOk;
}
