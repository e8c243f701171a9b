#include "names.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr Subtree allSubtrees[] = {
    {TarvoConfig::eProductRoot, "product-root"},        {TarvoConfig::eVersionRoot, "version-root"},
    {TarvoConfig::eLanguageRoot, "language-root"},      {TarvoConfig::eProfilesRoot, "profiles-root"},
    {TarvoConfig::eCurrentProfile, "current-profile"},  {TarvoConfig::eApplications, "applications"},
    {TarvoConfig::eRecentFileList, "recent-file-list"}, {TarvoConfig::eSettings, "settings"},
    {TarvoConfig::eUserConfig, "user-config"},
};

/// By their values, eInt first.
constexpr std::string_view allTypes[] = {"int", "int64", "double", "binary", "string"};

} // namespace

std::span<const Subtree> subtrees()
{
    return allSubtrees;
}

std::vector<std::string> subtreeNames()
{
    std::vector<std::string> names;
    for (const Subtree& subtree : allSubtrees) {
        names.emplace_back(subtree.name);
    }
    return names;
}

TarvoConfig::Path subtreePath(std::string_view name)
{
    return std::ranges::find(allSubtrees, name, &Subtree::name)->path;
}

std::vector<std::string> typeNames()
{
    return {std::begin(allTypes), std::end(allTypes)};
}

std::string_view typeName(VelaVariant::VarType type)
{
    return type == VelaVariant::eNull ? "none" : allTypes[type - 1];
}

VelaVariant::VarType typeOf(std::string_view name)
{
    const auto* const found = std::ranges::find(allTypes, name);
    return found == std::end(allTypes) ? VelaVariant::eNull
                                       : static_cast<VelaVariant::VarType>(found - std::begin(allTypes) + 1);
}
