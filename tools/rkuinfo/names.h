// The names of subtrees and types, as they stand on a command line and in a file.
#pragma once

#include <RkUInfo.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

struct Subtree
{
    TarvoConfig::Path path;
    std::string_view name;
};

/// In the order of their values.
std::span<const Subtree> subtrees();
std::vector<std::string> subtreeNames();
/// The name must be one of them.
TarvoConfig::Path subtreePath(std::string_view name);

std::vector<std::string> typeNames();
std::string_view typeName(VelaVariant::VarType type);
/// eNull for a name that is none.
VelaVariant::VarType typeOf(std::string_view name);
