// A command is one file in this folder, which contains its syntax, help and function, and one line of
// CMakeLists.txt; CONTRIBUTING.md has an example. Each word of the syntax is a row of the table in
// command_line.cpp; words in brackets are optional. The parser, the help, the man page and the completions
// are generated from the commands and that table.
#pragma once

#include "model/installation.h"
#include "transfer/transfer.h"

#include <string>
#include <string_view>
#include <vector>

struct Command
{
    /// Adds the command to all().
    Command(std::string_view name, std::string_view words, std::string_view summary, std::string_view more,
            void (*run)(Session&));

    /// Sorted by name.
    static std::vector<Command>& all();

    std::string name;
    std::string words;
    std::string summary;
    std::string more; ///< printed at the end of its help
    void (*run)(Session&);
};

/// Runs a command line and returns the exit code. Throws Failure for a wrong command line, and what the
/// command throws.
int runCommandLine(const std::vector<std::string>& words);

/// Prints the table, or with --json the JSON.
void printEither(const Session& session, const Table& table, const Json& json);

/// Returns the names of the subtrees, in the order of TarvoConfig::Path.
std::vector<std::string> subtreeNames();

/// The key that SUBTREE and KEY name, or the value that SUBTREE and VALUE, or KEY and --value, name.
struct Place
{
    Text subtree;              ///< the path of the subtree's own key
    Text key;                  ///< below it; empty for that key itself
    std::optional<Text> value; ///< its name

    /// Throws for a path that no application could use.
    Place(const Session& session, const Installation& installation);

    Text path() const { return joinedKey(subtree, key); }
    /// Reads the key as readTree does; throws if it does not exist.
    Tree tree(bool isDeep = true, Losses* losses = nullptr) const;
    /// Throws a Failure that says with the whole path that the place does not exist.
    [[noreturn]] void failNotFound() const;
};

/// Returns the row of a key or value in a listing. For people it has the path below the listed key; for
/// programs the path of the key below the subtree, the name, the type and the data.
std::vector<Cell> rowOf(const Place& place, const Name& name, const Value& value, bool isForPeople);
