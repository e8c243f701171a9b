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

/// Returns the full path of a folder as the system's calls accept it, with a backslash at its end; empty for
/// anything else.
Text fullFolder(const std::string& name);

/// Converts such a path for the streams of C++.
std::string nativePath(const Text& path);

/// Quotes a word so that the system's shells read it back unchanged, without expanding anything in it.
std::string shellWord(const std::string& word);

/// Returns the folder for the user's application data, roaming or local, where the system looks for it.
std::string userFolder(bool isRoaming);

/// Returns ", in FOLDER" for messages about the registry; empty if the system does not keep it in one folder.
std::string registryPlace();

/// Throws a Failure with the reason and a fix if the user cannot write to a key. Changes nothing.
void requireWritable(const Text& key);

/// Makes changes to the registry. If they throw or the process terminates, none is stored; on a system
/// without transactions each is stored at once. Throws if they cannot be stored.
void inTransaction(const std::function<void()>& change);
bool hasTransactions();
