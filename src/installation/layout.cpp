#include "installation/layout.h"

#include "installation/names.h"

#include <iterator>

namespace {

using uinfo::BoundedText;

/// Appends a name and a separator. Appends nothing and returns false if the path would be too long.
bool appendFolder(BoundedText& path, const wchar_t* name, const wchar_t* separator)
{
    const std::size_t before = path.length();
    const bool fits =
        path.append(name, uinfo::longestComposedPath) && path.append(separator, uinfo::longestComposedPath);
    path.cut(fits ? path.length() : before);
    return fits;
}

} // namespace

namespace uinfo {

bool appendCompanyRoot(BoundedText& key, const wchar_t* company)
{
    return key.append(L"Software\\") && key.append(company);
}

bool appendProductRoot(BoundedText& key, const wchar_t* companyRoot, const wchar_t* product)
{
    return key.append(companyRoot) && key.appendComponent(product);
}

bool appendVersionRoot(BoundedText& key, const wchar_t* productRoot)
{
    return key.append(productRoot) && key.appendComponent(versionSegment);
}

bool appendSubtree(BoundedText& key, TarvoConfig::Path path, const RegistryNames& names)
{
    const auto below = [&]<std::size_t Size>(const wchar_t(&component)[Size]) {
        return key.append(names.versionRoot) && key.appendComponent(names.language) &&
               key.appendComponentPart(component, Size - 1);
    };
    switch (path) {
    case TarvoConfig::eProductRoot:
        return key.append(names.productRoot);
    case TarvoConfig::eVersionRoot:
        return key.append(names.versionRoot);
    case TarvoConfig::eLanguageRoot:
        return key.append(names.versionRoot) && key.appendComponent(names.language);
    case TarvoConfig::eProfilesRoot:
        return below(L"Profiles");
    case TarvoConfig::eCurrentProfile:
        break;
    case TarvoConfig::eApplications:
        return below(L"Applications");
    case TarvoConfig::eRecentFileList:
        return below(L"Recent File List");
    case TarvoConfig::eSettings:
        return below(L"Settings");
    case TarvoConfig::eUserConfig:
        return below(L"Settings\\UserConfig");
    }
    return false;
}

bool appendProfile(BoundedText& profilesRoot, const wchar_t* profile)
{
    return profilesRoot.appendComponent(profile);
}

bool appendProfileConfig(BoundedText& profileKey)
{
    return profileKey.appendComponent(L"Config", longestConfigKey);
}

bool appendUserFolder(BoundedText& path, UserFolder folder, const UserNames& names)
{
    const wchar_t* const levels[] = {names.company, names.product, versionSegment, names.language};
    constexpr const wchar_t* leaves[] = {L"Support\\", L"Plotters\\", L"CrashReport\\", L"Printstyle\\",
                                         L"Template"};
    const auto last = static_cast<std::size_t>(folder);
    for (std::size_t level = 0; level <= last && level < std::size(levels); ++level) {
        if (!appendFolder(path, levels[level], L"\\")) {
            return false;
        }
    }
    return last < std::size(levels) || appendFolder(path, leaves[last - std::size(levels)], L"");
}

bool assignStoredPath(BoundedText& path, TarvoConfig::Error read, const VelaVariant& stored)
{
    path.cut(0);
    if (read != TarvoConfig::eOk) {
        return false;
    }
    static_cast<void>(path.append(stored.getString(), longestStoredPath));
    return true;
}

bool appendStyleFile(BoundedText& supportFolder)
{
    return appendFolder(supportFolder, L"Style.tus", L"");
}

} // namespace uinfo
