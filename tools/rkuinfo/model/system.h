// What each system does in its own way.
#pragma once

#include "text/text.h"

#include <cstddef>
#include <optional>
#include <string>

/// Loads libraries only from the program's and the system's folder; lets every byte pass unchanged through
/// the standard streams, and makes a console understand colours and UTF-8 while it lives.
class Console
{
public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console(); // NOLINT(performance-trivially-destructible): where it has something to restore

private:
    [[maybe_unused]] unsigned long m_mode = 0;
    [[maybe_unused]] unsigned int m_codePage = 0; // 0: standard output is not a console
};

/// The width of the terminal that standard output is; nothing when it is not a terminal.
std::optional<std::size_t> terminalColumns();
bool errorsGoToTerminal();

/// The full path of a folder as the system's calls take it, ending with a backslash; empty for anything else.
Text fullFolder(const std::string& name);

/// A path of that kind for C++'s own streams.
std::string nativePath(const Text& path);

/// A word as the system's shells read it back unchanged, without expanding anything in it.
std::string shellWord(const std::string& word);

/// The folder for the user's application data, roaming or local, as the system's call would look for it.
std::string userFolder(bool isRoaming);

/// For messages about the registry: ", in FOLDER"; empty where the system has no single place for it.
std::string registryPlace();

/// Why the user cannot write to the registry, and what to do; nothing when he can. Changes nothing.
struct Trouble;
std::optional<Trouble> writeTrouble(const Text& key);

/// Changes of the registry from here on are kept together by commit, or undone at the end, also at that of
/// the process; where the system has no transactions, each is kept at once.
class RegistryTransaction
{
public:
    RegistryTransaction();
    RegistryTransaction(const RegistryTransaction&) = delete;
    RegistryTransaction& operator=(const RegistryTransaction&) = delete;
    ~RegistryTransaction(); // NOLINT(performance-trivially-destructible)

    static bool areSupported();
    /// Throws when the changes cannot be kept: nothing was changed.
    void commit(); // NOLINT(readability-convert-member-functions-to-static)

private:
    [[maybe_unused]] bool m_isOpen = false;
};
