// What every system does in its own way.
#pragma once

#include "text/text.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

/// Loads libraries from the program's and the system's folder alone; lets every byte pass unchanged through
/// the standard streams, and a console understand colours and UTF-8 while it lives.
class Console
{
public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console(); // NOLINT(performance-trivially-destructible): where it has something to put back

private:
    [[maybe_unused]] unsigned long m_mode = 0;
    [[maybe_unused]] unsigned int m_codePage = 0; // 0: standard output is no console
};

/// The width of the terminal that standard output is; nothing when it is none.
std::optional<std::size_t> terminalColumns();
bool errorsGoToTerminal();

/// The full path of a folder as the system's calls take it, a backslash at its end; empty when there is none.
Text fullFolder(const std::string& name);

/// A path of that kind for C++'s own streams.
std::string nativePath(const Text& path);

/// Whether a file is there, but this user may not read it or another process has locked it.
bool isBarred(const Text& path);

/// Makes an empty file; false where something of that name is, or nothing may be made.
bool makeFile(const std::filesystem::path& path);

/// For messages about the registry, where it lies: " in FILE"; empty where the system has no one place for
/// it.
std::string registryPlace();

/// Where the system has transactions over several calls of the registry, those from begin to end are all
/// kept, or undone by the end, also by that of the process.
struct RegistryTransaction
{
    static bool begin(); ///< false where there are none
    static bool end(bool keep);
};
