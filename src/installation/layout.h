// Where the product's registry keys and the user's folders are, composed of the names that are given.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

// Each function appends to a text and returns false if the result does not fit, with a part of it left.

bool appendCompanyRoot(BoundedText& key, const wchar_t* company);
bool appendProductRoot(BoundedText& key, const wchar_t* companyRoot, const wchar_t* product);
bool appendVersionRoot(BoundedText& key, const wchar_t* productRoot);

/// What the subtrees' key paths are composed of.
struct RegistryNames
{
    const wchar_t* productRoot;
    const wchar_t* versionRoot;
    const wchar_t* language;
};

/// False also for eCurrentProfile, which appendProfile composes, and for what is not a value of the enum.
bool appendSubtree(BoundedText& key, TarvoConfig::Path path, const RegistryNames& names);
/// Makes the profiles root a profile's key.
bool appendProfile(BoundedText& profilesRoot, const wchar_t* profile);
/// Makes a profile's key its Config key; keeps the former if the latter does not fit.
bool appendProfileConfig(BoundedText& profileKey);

struct UserNames
{
    const wchar_t* company;
    const wchar_t* product;
    const wchar_t* language;
};

/// A folder below the user's application data folder, roaming or local.
enum class UserFolder
{
    company,
    product,
    version,
    language,
    support,
    plotters,
    crashReport,
    printstyle,
    templates,
};

/// Extends the application data folder, which ends with a separator, level by level. At the first level that
/// would pass 1021 characters path keeps those before it.
bool appendUserFolder(BoundedText& path, UserFolder folder, const UserNames& names);
/// Sets path to a path that is stored as a setting, given what reading it returned: to nothing for a value
/// that is not a string and for one over 1022 characters. False if there is no such setting.
bool assignStoredPath(BoundedText& path, TarvoConfig::Error read, const VelaVariant& stored);

/// The user interface's standard style file, in the roaming Support folder.
bool appendStyleFile(BoundedText& supportFolder);

} // namespace uinfo
