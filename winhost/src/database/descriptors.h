// The descriptors by which SQLite has the store open. A program may close descriptors that are not its own,
// to become a daemon for example, and SQLite would then write to the files that are opened under their
// numbers. And a process loses its POSIX locks on a file as soon as any of its code closes that file. So
// SQLite's open, close and fcntl are replaced by functions that know these descriptors: locks belong to the
// open file, and a number that is lost is neither closed nor unlocked.
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

/// From here on, files that SQLite opens in this thread are the store's if they have these names. Null ends
/// that.
void expectFiles(const std::string* file);

/// Returns -1 if the file is not open, or if SQLite shares it with another connection of the process.
int descriptor(File file);
/// Returns true if a number does not belong to the store's file any more.
bool areFilesLost();
/// Returns true if the open file is the one at the path, or if there is neither.
bool isAtPlace(const std::string& file, File which);
/// Closes the files, which are lost then.
void loseFiles();
/// Has SQLite close the database, but not the files that are lost.
void closeDatabase(sqlite3* database);

} // namespace winhost::database
