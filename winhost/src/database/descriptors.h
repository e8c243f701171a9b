// The descriptors of the files that SQLite has open. A program may close descriptors that are not its own,
// for example to become a daemon. SQLite would then write to files that are opened later and get the same
// numbers. Also, a process loses its POSIX locks on a file as soon as any of its code closes that file. So
// this module replaces SQLite's open, close and fcntl with functions that recognise these descriptors. The
// new fcntl sets locks that belong to the open file, not to the process. While SQLite closes the database,
// these functions ignore descriptors that now refer to other files. The module also replaces
// - pwrite, so that pages of the log's index are allocated on the disk before they are mapped;
// - unlink, so that a process that still maps a removed index does not return cached results;
// - mmap, so that the child of a fork does not share its parent's mappings of the index;
// - the pause between two attempts to lock, so that no transaction waits for more than 5 s.
#pragma once

#include <string>

struct sqlite3;

namespace winhost::database {

enum File
{
    eContent,
    eLog,
    eIndex
};
constexpr const char* suffixes[] = {"", "-wal", "-shm"};

/// Records the descriptors of this file, its log and its index when SQLite opens them for the connection.
/// If any of the descriptors 0 to 2 is free, first opens /dev/null on it; otherwise, messages that the
/// program prints to that descriptor could overwrite the store.
void recordFiles(const std::string& file);

/// Returns -1 if the file is not open.
int descriptor(File file);
/// In the child of a fork: closes the files, and replaces SQLite's mappings of the index with private copies.
/// The child must not share its parent's locks.
void leaveFiles();
/// Returns true if one of the descriptors no longer refers to the store's file. The first call in each
/// process also calls leaveFiles(), because a child created by clone or _Fork skips the fork handlers.
bool areFilesLost();
/// Makes SQLite close the database. Does not close a descriptor that no longer refers to the store's file.
void closeDatabase(sqlite3* database);

} // namespace winhost::database
