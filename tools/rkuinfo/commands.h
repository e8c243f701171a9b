// The commands. Each runs once the command line has been read whole, and throws when it fails.
#pragma once

#include "names.h"
#include "session.h"
#include "text.h"

#include <optional>
#include <string>

/// What stands behind the commands that work on a subtree; each takes some of it.
struct Arguments
{
    std::string subtree; ///< one of subtreeNames()
    std::string key;     ///< a key below it, or for get and set a value with its key before it
    std::string type;
    std::string data;
    std::optional<std::string> valueName;
    std::string file; ///< empty: a standard stream
    bool all = false;

    TarvoConfig::Path path() const { return subtreePath(subtree); }
    /// For messages.
    std::string target() const { return key.empty() ? subtree : subtree + ' ' + shown(utf16(key)); }
};

void show(Session& session);
void provision(Session& session);
void languages(Session& session);
void doctor(Session& session);

void get(Session& session, const Arguments& arguments);
void set(Session& session, const Arguments& arguments);
void list(Session& session, const Arguments& arguments);
void tree(Session& session, const Arguments& arguments);
void remove(Session& session, const Arguments& arguments);
void exportTree(Session& session, const Arguments& arguments);
void importTree(Session& session, const Arguments& arguments);
