// The names of the library's enumerations, for people.
#pragma once

#include <RkUInfo.h>

#include <span>
#include <string_view>

struct NamedPath
{
    TarvoConfig::Path path;
    std::string_view name;
};

struct NamedType
{
    VelaVariant::VarType type;
    std::string_view name;
};

/// All subtrees, in the order of their values.
std::span<const NamedPath> allPaths();
/// Null for a name that is none.
const NamedPath* findPath(std::string_view name);

/// Null for a name that is none.
const NamedType* findType(std::string_view name);
std::string_view typeName(VelaVariant::VarType type);

std::string_view errorName(TarvoConfig::Error error);
