// The names of subtrees and types on a command line. Each is taken in any case, and as the interface writes
// it.
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
std::vector<std::string> typeNames();

/// The name among several that a word is, "recent-file-list" also as eRecentFileList; throws, with the one
/// that was probably meant, when it is none.
std::string chosen(const std::string& word, const std::vector<std::string>& names, const std::string& what);
TarvoConfig::Path subtreePath(std::string_view name);
