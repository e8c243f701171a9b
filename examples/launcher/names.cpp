#include "names.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr NamedPath paths[] = {
    {TarvoConfig::eProductRoot, "ProductRoot"},       {TarvoConfig::eVersionRoot, "VersionRoot"},
    {TarvoConfig::eLanguageRoot, "LanguageRoot"},     {TarvoConfig::eProfilesRoot, "ProfilesRoot"},
    {TarvoConfig::eCurrentProfile, "CurrentProfile"}, {TarvoConfig::eApplications, "Applications"},
    {TarvoConfig::eRecentFileList, "RecentFileList"}, {TarvoConfig::eSettings, "Settings"},
    {TarvoConfig::eUserConfig, "UserConfig"},
};

constexpr NamedType types[] = {
    {VelaVariant::eNull, "null"},     {VelaVariant::eInt, "int"},       {VelaVariant::eInt64, "int64"},
    {VelaVariant::eDouble, "double"}, {VelaVariant::eBinary, "binary"}, {VelaVariant::eString, "string"},
};

/// The entry of that name, or null.
template <typename Entries>
auto* findName(const Entries& entries, std::string_view name)
{
    const auto* const found = std::ranges::find(entries, name, [](const auto& entry) { return entry.name; });
    return found != std::end(entries) ? found : nullptr;
}

} // namespace

std::span<const NamedPath> allPaths()
{
    return paths;
}

const NamedPath* findPath(std::string_view name)
{
    return findName(paths, name);
}

const NamedType* findType(std::string_view name)
{
    return findName(types, name);
}

std::string_view typeName(VelaVariant::VarType type)
{
    const auto* const found = std::ranges::find(types, type, &NamedType::type);
    return found != std::end(types) ? found->name : "unknown";
}

std::string_view errorName(TarvoConfig::Error error)
{
    switch (error) {
    case TarvoConfig::eOk:
        return "eOk";
    case TarvoConfig::eNotFound:
        return "eNotFound";
    case TarvoConfig::eWrongType:
        return "eWrongType";
    case TarvoConfig::eInvalidIterator:
        return "eInvalidIterator";
    case TarvoConfig::eRegistryError:
        return "eRegistryError";
    case TarvoConfig::eBufferTooSmall:
        return "eBufferTooSmall";
    case TarvoConfig::eInvalidInput:
        return "eInvalidInput";
    }
    return "unknown";
}
