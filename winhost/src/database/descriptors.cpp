#include "database/descriptors.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <utility>

namespace winhost::database {

namespace {

std::atomic<int> numbers[std::size(suffixes)] = {-1, -1, -1};

// The file offset that marks these descriptors. SQLite never changes the offset, and other descriptors are
// unlikely to have it. Some file systems refuse offsets of 2 GiB and more.
constexpr off_t mark = 0x5707E5E7;

thread_local const std::string* expected = nullptr;
thread_local bool isClosing = false;

bool isOurs(int file)
{
    return std::ranges::any_of(numbers, [file](int ours) { return ours == file; });
}

bool isLost(int file)
{
    return lseek(file, 0, SEEK_CUR) != mark;
}

int openFile(const char* path, int flags, int mode)
{
    const int file = ::open(path, flags, mode);
    for (int which = eContent; expected != nullptr && file >= 0 && which <= eIndex; ++which) {
        if (path == *expected + suffixes[which]) {
            lseek(file, mark, SEEK_SET);
            numbers[which] = file;
        }
    }
    return file;
}

int closeFile(int file)
{
    return isClosing && isOurs(file) && isLost(file) ? 0 : ::close(file);
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
    if (isLost(file)) {
        return isClosing ? 0 : fcntl(file, command, argument);
    }
    static_cast<struct flock*>(argument)->l_pid = 0;
    return fcntl(file, command == F_SETLK ? F_OFD_SETLK : F_OFD_GETLK, argument);
}

/// When SQLite writes one byte to allocate a page of the log's index, allocates the whole page. Without this,
/// a later write to the mapped page would raise a signal if the disk is full and its blocks are smaller than
/// pages.
ssize_t writeFile(int file, const void* data, std::size_t size, off_t at)
{
    constexpr off_t page = 4096;
    if (size != 1 || file != numbers[eIndex] || isLost(file)) {
        return pwrite(file, data, size, at);
    }
    errno = posix_fallocate(file, at / page * page, page);
    return errno == 0 ? static_cast<ssize_t>(size) : -1;
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
        replace("pwrite", writeFile);
        replace("pwrite64", writeFile);
        return true;
    }();
    expected = areReplaced ? file : nullptr;
}

int descriptor(File file)
{
    return numbers[file];
}

bool areFilesLost()
{
    static pid_t process = 0;
    if (std::exchange(process, getpid()) != getpid()) {
        std::ranges::for_each(numbers, [](int file) { isLost(file) ? 0 : ::close(file); });
    }
    return std::ranges::any_of(numbers, [](int file) { return file >= 0 && isLost(file); });
}

bool isAtPlace(const std::string& file, File which)
{
    struct stat open = {};
    struct stat found = {};
    fstat(descriptor(which), &open);
    stat((file + suffixes[which]).c_str(), &found);
    return open.st_dev == found.st_dev && open.st_ino == found.st_ino;
}

void closeDatabase(sqlite3* database)
{
    isClosing = true;
    sqlite3_close(database);
    isClosing = false;
    std::ranges::for_each(numbers, [](std::atomic<int>& file) { file = -1; });
}

} // namespace winhost::database
