#include "database/descriptors.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <random>
#include <utility>

namespace winhost::database {

namespace {

using Identity = std::pair<dev_t, ino_t>; // {} of no file

struct Descriptor
{
    std::atomic<int> number = -1;
    Identity opened;
    off_t mark = 0; // its position, which SQLite does not use, and which no other file has
};
Descriptor descriptors[std::size(suffixes)];

thread_local const std::string* expected = nullptr;
thread_local bool isAbandoning = false;

bool isOurs(int file)
{
    return std::ranges::any_of(descriptors, [file](const Descriptor& each) { return each.number == file; });
}

Identity identityOf(int result, const struct stat& found)
{
    return result == 0 ? Identity(found.st_dev, found.st_ino) : Identity();
}

int openFile(const char* path, int flags, int mode)
{
    const int file = ::open(path, flags, mode);
    for (int which = eContent; expected != nullptr && file >= 0 && which <= eIndex; ++which) {
        if (path == *expected + suffixes[which]) {
            struct stat found = {};
            const int result = fstat(file, &found);
            descriptors[which].opened = identityOf(result, found);
            descriptors[which].mark = lseek(file, off_t{1} << 40 | std::random_device()(), SEEK_SET);
            descriptors[which].number = file;
        }
    }
    return file;
}

int closeFile(int file)
{
    return isAbandoning && isOurs(file) ? 0 : ::close(file);
}

int controlFile(int file, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (!isOurs(file) || (command != F_SETLK && command != F_GETLK)) {
        return fcntl(file, command, argument);
    }
    static_cast<struct flock*>(argument)->l_pid = 0;
    return isAbandoning ? 0 : fcntl(file, command == F_SETLK ? F_OFD_SETLK : F_OFD_GETLK, argument);
}

template <typename Function>
void replace(const char* name, Function* function)
{
    sqlite3_vfs* const system = sqlite3_vfs_find("unix");
    system->xSetSystemCall(system, name, reinterpret_cast<sqlite3_syscall_ptr>(function));
}

} // namespace

void expectFiles(const std::string* file)
{
    static const bool areReplaced = [] {
        replace("open", openFile);
        replace("close", closeFile);
        replace("fcntl", controlFile);
        return true;
    }();
    expected = areReplaced ? file : nullptr;
}

void abandonFiles(bool isAbandoned)
{
    isAbandoning = isAbandoned;
}

int descriptor(File file)
{
    return descriptors[file].number;
}

bool areFilesLost()
{
    return std::ranges::any_of(descriptors, [](const Descriptor& each) {
        return each.number >= 0 && lseek(each.number, 0, SEEK_CUR) != each.mark;
    });
}

bool isAtPlace(const std::string& file, File which)
{
    struct stat found = {};
    const int result = stat((file + suffixes[which]).c_str(), &found);
    return identityOf(result, found) == descriptors[which].opened;
}

void closeFiles()
{
    std::ranges::for_each(descriptors, [](const Descriptor& each) { ::close(each.number); });
}

void forgetFiles()
{
    for (Descriptor& each : descriptors) {
        each.number = -1;
        each.opened = {};
    }
}

} // namespace winhost::database
