// The descriptors by which SQLite has the store open. A program may close descriptors that are not its own,
// to become a daemon for one, and SQLite would then write to the files that are opened under their numbers.
// And a process loses its locks on a file as soon as anything in it closes that file. So SQLite's open, close
// and fcntl are replaced by functions that know these descriptors, and lock through them only.
#pragma once

#include <string>

namespace winhost::database {

enum File
{
    eContent,
    eLog,
    eIndex
};
constexpr const char* suffixes[] = {"", "-wal", "-shm"};

/// From here on, what this thread makes SQLite open is taken for these files; null ends that.
void expectFiles(const std::string* file);
/// Until false, SQLite neither closes nor unlocks these files in this thread.
void abandonFiles(bool isAbandoned);

/// -1 if the file is not open, or if SQLite shares it with another connection of the process.
int descriptor(File file);
/// Returns true if a number no longer belongs to the file for which it was opened.
bool areFilesLost();
/// Returns true if the file that is open is the one at the path.
bool isAtPlace(const std::string& file, File which);
void closeFiles();
void forgetFiles();

} // namespace winhost::database
