// The terminal, which every system asks in its own way.
#pragma once

#include <cstddef>
#include <optional>

/// Lets every byte pass unchanged through the standard streams, and a console understand colours and UTF-8.
void prepareStreams();

/// The width of the terminal that standard output is; nothing when it is none.
std::optional<std::size_t> terminalColumns();
