// Builds the paths of the product's registry keys and of the user's folders.
#pragma once

#include "platform/text.h"

#include <RkUInfo/TarvoConfig.h>

namespace uinfo {

// Each function appends to its first argument. A function returns false if its result does not fit; part of
// the result may then have been appended.

bool appendCompanyRoot(BoundedText& key, const wchar_t* company);
bool appendProductRoot(BoundedText& key, const wchar_t* companyRoot, const wchar_t* product);
bool appendVersionRoot(BoundedText& key, const wchar_t* productRoot);

/// The components from which appendSubtree builds a key path.
struct RegistryNames
{
    const wchar_t* productRoot;
    const wchar_t* versionRoot;
    const wchar_t* language;
};

/// Returns false for a value outside the enum and for eCurrentProfile, which requires appendProfile.
bool appendSubtree(BoundedText& key, TarvoConfig::Path path, const RegistryNames& names);
/// Appends a profile's name to the key path of the profiles root.
bool appendProfile(BoundedText& profilesRoot, const wchar_t* profile);
/// Appends the Config key to a profile's key path, or nothing if it does not fit.
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

/// Appends a user folder to the path of an application data folder, which must end with a separator. Stops
/// before the first name that would make the path longer than 1021 characters.
bool appendUserFolder(BoundedText& path, UserFolder folder, const UserNames& names);
/// Copies a stored string to `path`. Clears `path` if the value is not a string or has more than 1022
/// characters. `read` is the result of getValue; if `read` is an error, clears `path` and returns false.
bool assignStoredPath(BoundedText& path, TarvoConfig::Error read, const VelaVariant& stored);

/// Appends the name of the default UI style file to the path of the roaming Support folder.
bool appendStyleFile(BoundedText& supportFolder);

} // namespace uinfo
