// Functions that Windows and the host implement differently.
#pragma once

#include "text/text.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

/// Allows libraries to be loaded only from the program folder and the system folder. Makes the standard
/// streams binary. Enables colours and UTF-8 on a console until the process exits.
void prepareProcess();

/// Returns the terminal's width in columns, or nothing if standard output is not a terminal.
std::optional<std::size_t> terminalColumns();
bool errorsGoToTerminal();

/// Returns the full Windows path of a folder, with a trailing backslash; empty if `name` is not a folder.
Text fullFolder(const std::string& name);

/// Converts a Windows path to one that C++ streams accept.
std::string nativePath(const Text& path);

/// Quotes a word so that the system's shells neither split nor interpret it.
std::string shellWord(const std::string& word);

/// Returns the folder of the user's roaming application data if `isRoaming` is true, otherwise the folder of
/// the local data. On Windows, returns "%APPDATA%" or "%LOCALAPPDATA%" without expanding the variable.
std::string userFolder(bool isRoaming);

/// Returns ", in FOLDER" for messages about the registry, or an empty string if the registry is not in a
/// single folder.
std::string registryPlace();

/// If the user cannot write to a key, throws a Failure with the reason and a fix. Changes nothing.
void requireWritable(const Text& key);

/// Calls `change` in a transaction: if `change` throws or the process terminates, none of its changes is
/// stored. Throws a Failure if the changes cannot be stored. On a system without transactions, each change is
/// stored immediately.
void inTransaction(const std::function<void()>& change);
bool hasTransactions();
