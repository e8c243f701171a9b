// The key that most commands work on.
#pragma once

#include "names.h"
#include "text.h"

#include <CLI/CLI.hpp>

#include <string>

struct Target
{
    std::string subtree;
    std::string key;

    TarvoConfig::Path path() const { return subtreePath(subtree); }
    /// For messages.
    std::string name() const { return key.empty() ? subtree : subtree + ' ' + shown(utf16(key)); }
};

inline void addSubtree(CLI::App& command, Target& target)
{
    command.add_option("SUBTREE", target.subtree, "product-root ... user-config, see rkuinfo --help")
        ->type_name("")
        ->required()
        ->check(CLI::IsMember(subtreeNames()).description(""));
}

inline void addKey(CLI::App& command, Target& target)
{
    command.add_option("KEY", target.key, "a key below the subtree's own, / or \\ between its parts")
        ->type_name("");
}
