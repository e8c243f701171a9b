// Functions that differ between the systems.
#pragma once

#include "text/text.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

/// Restricts the loading of libraries to the program's and the system's folder, makes the standard streams
/// binary, and lets a console understand colours and UTF-8 until the process exits.
void prepareProcess();

/// Returns the width of the terminal that standard output is; nothing if it is not a terminal.
std::optional<std::size_t> terminalColumns();
bool errorsGoToTerminal();

/// Returns the full Windows path of a folder, with a backslash at its end; empty if `name` is not a folder.
Text fullFolder(const std::string& name);

/// Converts a Windows path to one that C++ streams accept.
std::string nativePath(const Text& path);

/// Quotes a word so that the system's shells read it back unchanged, without expanding anything in it.
std::string shellWord(const std::string& word);

/// Returns the folder for the user's application data, roaming or local, where the system looks for it.
std::string userFolder(bool isRoaming);

/// Returns ", in FOLDER" for messages about the registry; empty if the registry is not in a single folder.
std::string registryPlace();

/// Throws a Failure with the reason and what to do if the user cannot write to a key. Changes nothing.
void requireWritable(const Text& key);

/// Calls `change` in a transaction: if `change` throws or the process terminates, none of its changes is
/// stored. Throws a Failure if the changes cannot be stored. On a system without transactions, each change is
/// stored at once.
void inTransaction(const std::function<void()>& change);
bool hasTransactions();
