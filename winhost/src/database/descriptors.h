// The descriptors of the files that SQLite has open. A program may close descriptors that are not its own,
// for example to become a daemon, and SQLite would then write to files that are opened later under the same
// numbers. Also, a process loses its POSIX locks on a file as soon as any of its code closes that file. So
// SQLite's open, close and fcntl are replaced by functions that know these descriptors: locks belong to the
// open file, and a descriptor that refers to another file now is neither closed nor unlocked.
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

/// Makes this thread treat files with these names as the store's when SQLite opens them. Null ends this.
void expectFiles(const std::string* file);

/// Returns -1 if the file is not open, or if SQLite shares it with another connection of the process.
int descriptor(File file);
/// Returns true if one of the descriptors no longer refers to the store's file.
bool areFilesLost();
/// Returns true if the open file is the one at the path, or if neither exists.
bool isAtPlace(const std::string& file, File which);
/// Closes the files and marks them as lost.
void loseFiles();
/// Makes SQLite close the database, except the files that are lost.
void closeDatabase(sqlite3* database);

} // namespace winhost::database
