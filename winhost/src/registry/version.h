// The header of the write-ahead log's index, which all processes share in memory and every commit changes. It
// is an interface of SQLite's: https://www.sqlite.org/walformat.html. Where it has another format there is no
// version.
#pragma once

#include <cstdint>

struct sqlite3;

namespace winhost::registry {

/// Makes the index and gives it its room on the disk, for a log of 32 MB: it is written to in memory, where a
/// full disk would be a signal and not an error. An SQLite error.
int allocateIndex(sqlite3* database, int descriptor);

/// From here on storeVersion tells the version, or tells none.
void showVersion(sqlite3* database);
void hideVersion();

/// Grows by 1 with each commit of any process.
std::uint32_t changeCount();

} // namespace winhost::registry
