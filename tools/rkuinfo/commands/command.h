// A command is a file of this folder, with its words, its help and what it does, and a line of
// CMakeLists.txt:
//
//     void greet(Session& session) { print("hello " + session["NAME"]); }
//     const Command greetCommand("greet", "NAME [--json]", "Print a greeting", "", greet);
//
// Its words are rows of the table in command_line.cpp; those in brackets may be left out. Command lines are
// read, and help, man page and completions are made, by both.
#pragma once

#include "model/installation.h"
#include "transfer/transfer.h"

#include <string>
#include <string_view>
#include <vector>

struct Command
{
    /// Adds it to all().
    Command(std::string_view name, std::string_view words, std::string_view summary, std::string_view more,
            void (*run)(Session&));

    /// Sorted by name.
    static std::vector<Command>& all();

    std::string_view name;
    std::string_view words;
    std::string_view summary;
    std::string_view more; ///< of the help
    void (*run)(Session&);
};

/// Runs a command line and returns the exit code. Throws Failure for a wrong command line, and what the
/// command throws.
int runCommandLine(const std::vector<std::string>& words);

/// Prints the table, or with --json the JSON.
void printEither(const Session& session, const Table& table, const Json& json);

/// In the order of TarvoConfig::Path.
std::vector<std::string> subtreeNames();

/// The key that SUBTREE and KEY name, or that of the value that SUBTREE and VALUE name.
struct Place
{
    Text subtree; ///< the path of the subtree's own key
    Text key;     ///< below it; empty for that key itself
    Text value;   ///< its name

    /// Throws for a path that no application could use.
    Place(const Session& session, const Installation& installation);

    Text path() const { return joinedKey(subtree, key); }
    /// Opens the key; throws when it does not exist.
    Key open(unsigned long access = KEY_READ) const;
    /// Throws that what the session names does not exist, and which key was looked in.
    [[noreturn]] void failNotFound() const;

private:
    std::string m_words;
};
