// A new command needs a file in this folder (its syntax, help and function) and a line in CMakeLists.txt;
// CONTRIBUTING.md has an example. The table in command_line.cpp has a row for each word of the syntax; words
// in brackets are optional.
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

    /// Returns all commands, sorted by name.
    static std::vector<Command>& all();

    std::string name;
    std::string words;
    std::string summary;
    std::string more; ///< printed at the end of the command's help
    void (*run)(Session&);
};

/// Runs a command line and returns the exit code. Throws a Failure if the command line is wrong. Does not
/// catch exceptions thrown by the command.
int runCommandLine(const std::vector<std::string>& words);

/// Prints `json` if the command line contains --json, otherwise `table`.
void printEither(const Session& session, const Table& table, const Json& json);

/// Returns the names of the subtrees, in the order of TarvoConfig::Path.
std::vector<std::string> subtreeNames();

/// The key or value that the command line names. A value is named by VALUE, or by KEY and --value.
struct Place
{
    Text subtree;              ///< the path of the subtree's own key
    Text key;                  ///< the key's path below `subtree`; may be empty
    std::optional<Text> value; ///< the value's name

    /// Throws if the path, a key name in it or the value's name is too long.
    Place(const Session& session, const Installation& installation);

    Text path() const { return joinedKey(subtree, key); }
    /// Calls readTree for the key; throws if the key does not exist.
    Tree tree(bool isDeep = true, Losses* losses = nullptr) const;
    /// Throws a Failure that contains the full path and "not found".
    [[noreturn]] void failNotFound() const;
};

/// Returns the table row that lists a key or value. If `isForPeople` is true, the row begins with the path
/// below the listed key. Otherwise the first cell is the key's path in the subtree, and the second is the
/// value's name.
std::vector<Cell> rowOf(const Place& place, const Name& name, const Value& value, bool isForPeople);
