// What each system does in its own way.
#pragma once

#include "text/text.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

/// Loads libraries only from the program's and the system's folder; lets every byte pass unchanged through
/// the standard streams, and makes a console understand colours and UTF-8 until the process ends.
void prepareProcess();

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
/// The registry of an earlier version, which this one does not read; empty when there is none.
std::string earlierRegistry();

/// Why the user cannot write to the registry, and what to do; nothing when he can. Changes nothing.
struct Trouble;
std::optional<Trouble> writeTrouble(const Text& key);

/// Does something that changes the registry: whole, or when it throws or the process ends, not at all. Throws
/// when the changes cannot be kept. Where the system has no transactions, each change is kept at once.
void inTransaction(const std::function<void()>& change);
bool hasTransactions();
