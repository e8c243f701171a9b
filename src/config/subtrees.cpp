// The named subtrees of the registry tree, and the current profile.
#include "config/subtrees.h"

#include "installation/choices.h"
#include "installation/layout.h"
#include "installation/names.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <RkUInfo.h>

#include <utility>

using uinfo::BoundedText;
using uinfo::isEmpty;
using uinfo::RegistryKey;

bool uinfo::RegistryLayout::appendRoot(const TarvoConfig& config, TarvoConfig::Path path, BoundedText& key)
{
    if (config.m_initialized == 0) {
        return false;
    }
    const RegistryNames names = {config.m_rootPath, config.m_versionRootPath, config.m_language.shortName()};
    if (path != TarvoConfig::eCurrentProfile) {
        return appendSubtree(key, path, names);
    }
    wchar_t profile[profileCapacity];
    return appendSubtree(key, TarvoConfig::eProfilesRoot, names) &&
           config.getCurrentProfileNameFromReg(profile, key.text()) == TarvoConfig::eOk &&
           appendProfile(key, profile);
}

void TarvoConfig::getRegRootPath(Path path, wchar_t* const out) const
{
    if (out == nullptr) {
        return;
    }
    BoundedText key(out, uinfo::pathCapacity);
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
    BoundedText name(out, uinfo::profileCapacity);
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
    if (uinfo::readProfile(profiles, name) == uinfo::Answer::chosen) {
        return eOk;
    }
    const bool isSet =
        name.append(uinfo::defaultProfile) && profiles.setString(nullptr, uinfo::defaultProfile);
    return isSet ? eOk : eRegistryError;
}

TarvoConfig::Error TarvoConfig::initProfileName(const wchar_t* profile)
{
    if (isEmpty(profile)) {
        return eOk;
    }
    delete[] std::exchange(m_profileNameCmdLineInfo, uinfo::duplicate(profile));
    profile = m_profileNameCmdLineInfo; // the argument may have been the text released

    uinfo::PathBuffer key; // start-up is not complete, so getRegRootPath has no answer yet
    if (isEmpty(m_versionRootPath) ||
        !uinfo::appendSubtree(key, eProfilesRoot, {m_rootPath, m_versionRootPath, m_language.shortName()})) {
        return eOk;
    }
    const RegistryKey profiles = RegistryKey::open(HKEY_CURRENT_USER, key.text(), KEY_READ | KEY_WRITE);
    uinfo::TextBuffer<uinfo::offeredProfileCapacity> stored;
    if (uinfo::readName(profiles, nullptr, stored) == uinfo::Answer::chosen &&
        !uinfo::equalIgnoringCase(stored.text(), profile)) {
        profiles.setString(nullptr, profile);
    }
    return eOk;
}
