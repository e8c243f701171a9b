// What every system does in its own way.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

/// Lets every byte pass unchanged through the standard streams, and a console understand colours and UTF-8.
void prepareStreams();

/// The width of the terminal that standard output is; nothing when it is none.
std::optional<std::size_t> terminalColumns();

/// Whether a file beside the program is there, but this user may not read it or another process has locked
/// it.
bool isBarred(const std::string& name);
