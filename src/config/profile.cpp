// The profile step of start-up, and the current profile.
#include "installation/choices.h"
#include "installation/layout.h"
#include "installation/names.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

#include <utility>

using uinfo::BoundedText;
using uinfo::isEmpty;
using uinfo::RegistryKey;

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
    profile = m_profileNameCmdLineInfo; // the caller may have passed the string just deleted

    // getRegRootPath cannot be used, because it writes an empty string until start-up is complete.
    uinfo::PathBuffer key;
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
