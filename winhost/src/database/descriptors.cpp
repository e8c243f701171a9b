#include "database/descriptors.h"

#include "database/wait.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

namespace winhost::database {

namespace {

int numbers[std::size(suffixes)] = {-1, -1, -1};

// openFile sets the file offset of the store's descriptors to this value, which isLost checks. SQLite never
// changes it, and other files are unlikely to have it. Some file systems refuse offsets of 2 GiB and more.
constexpr off_t mark = 0x5707E5E7;

const std::string* recorded = nullptr;
bool isClosing = false;

// The first element is true in the process that opened the files. The system clears this page in each child,
// even if the child was created without the fork handlers.
alignas(4096) bool isOwner[4096];

bool isLost(int file)
{
    return file < 0 || lseek(file, 0, SEEK_CUR) != mark;
}

/// Must not throw: its caller is SQLite, which is written in C.
int openFile(const char* path, int flags, int mode)
{
    static bool isLeased = false; // true if another process's lease prevented the last open()
    if (isLeased && (flags & O_ACCMODE) == O_RDONLY) {
        errno = EWOULDBLOCK; // a lease must not make SQLite open the file read-only
        return -1;
    }
    int file = -1;
    do { // O_NONBLOCK makes open() fail instead of waiting for the end of a lease
        file = ::open(path, flags | O_NONBLOCK, mode);
        isLeased = file < 0 && errno == EWOULDBLOCK;
    } while (isLeased && wait(std::chrono::milliseconds{1}));
    const std::string_view opened(path);
    for (int which = eContent; file >= 0 && which <= eIndex; ++which) {
        if (opened.starts_with(*recorded) && opened.substr(recorded->size()) == suffixes[which]) {
            lseek(file, mark, SEEK_SET);
            numbers[which] = file;
        }
    }
    return file;
}

int closeFile(int file)
{
    const bool isOurs = std::ranges::find(numbers, file) != std::end(numbers);
    return isClosing && isOurs && isLost(file) ? 0 : ::close(file);
}

int controlFile(int file, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (command != F_SETLK && command != F_GETLK) {
        return fcntl(file, command, argument);
    }
    if (isClosing && isLost(file)) {
        return 0;
    }
    static_cast<struct flock*>(argument)->l_pid = 0;
    return fcntl(file, command == F_SETLK ? F_OFD_SETLK : F_OFD_GETLK, argument);
}

/// Replaces SQLite's pwrite. To allocate a region of the log's index, SQLite writes the last byte of each
/// page; this function instead allocates the whole region when the last page is written. Otherwise, a later
/// write to the mapped region could raise a signal when the disk is full and its blocks are smaller than
/// pages.
ssize_t writeFile(int file, const void* data, std::size_t size, off_t at)
{
    constexpr off_t region = 32768;
    if (size != 1 || file != numbers[eIndex]) {
        return pwrite(file, data, size, at);
    }
    const off_t end = at + 1;
    errno = end % region == 0 ? posix_fallocate(file, end - region, region) : 0;
    return errno == 0 ? 1 : -1;
}

/// Clears the header of the log's index before SQLite removes the index. A child, or a process that has
/// closed its descriptors, may still have the index mapped, but must not return cached results.
int removeFile(const char* path)
{
    constexpr char header[96] = {};
    if (std::string_view(path).ends_with(suffixes[eIndex]) && !isLost(numbers[eIndex])) {
        static_cast<void>(pwrite(numbers[eIndex], header, sizeof header, 0));
    }
    return ::unlink(path);
}

/// SQLite's mappings of the log's index. One mapping is enough for 16 MB of the log.
std::pair<void*, std::size_t> mappings[1024];
std::size_t mappingCount = 0;

void* mapFile(void* place, std::size_t size, int protection, int flags, int file, off_t at)
{
    void* const made = mmap(place, size, protection, flags, file, at);
    if (made != MAP_FAILED && file == numbers[eIndex] && mappingCount < std::size(mappings)) {
        mappings[mappingCount++] = {made, size};
    }
    return made;
}

/// Replaces SQLite's sleep. Does not sleep once the time limit has passed.
int pauseCall(sqlite3_vfs*, int microseconds)
{
    wait(std::chrono::microseconds{microseconds});
    return microseconds;
}

template <typename Function>
void replace(sqlite3_vfs* system, const char* name, Function* function)
{
    system->xSetSystemCall(system, name, reinterpret_cast<sqlite3_syscall_ptr>(function));
}

} // namespace

void recordFiles(const std::string& file)
{
    recorded = &file;
    int number = 0;
    do {
        number = ::open("/dev/null", O_RDWR); // returns the lowest free number
    } while (number >= 0 && number <= STDERR_FILENO);
    ::close(number);
    if (sqlite3_vfs* const system = sqlite3_vfs_find(nullptr)) { // null if memory is exhausted
        replace(system, "open", openFile);
        replace(system, "close", closeFile);
        replace(system, "fcntl", controlFile);
        replace(system, "pwrite", writeFile);
        replace(system, "pwrite64", writeFile);
        replace(system, "unlink", removeFile);
        replace(system, "mmap", mapFile);
        system->xSleep = pauseCall;
    }
}

int descriptor(File file)
{
    return numbers[file];
}

void leaveFiles()
{
    std::ranges::for_each(numbers, [](int file) { isLost(file) ? 0 : ::close(file); });
    // The mappings would keep the parent's locks after the parent is killed, and closing the database would
    // undo the parent's transaction in the shared index.
    for (const auto& [place, size] : std::span(mappings, mappingCount)) {
        void* const copy = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (copy != MAP_FAILED) {
            std::memcpy(copy, place, size);
            mremap(copy, size, size, MREMAP_MAYMOVE | MREMAP_FIXED, place);
        }
    }
}

bool areFilesLost()
{
    if (!std::exchange(isOwner[0], true)) {
        madvise(isOwner, sizeof isOwner, MADV_WIPEONFORK);
        leaveFiles();
    }
    return std::ranges::any_of(numbers, [](int file) { return file >= 0 && isLost(file); });
}

void closeDatabase(sqlite3* database)
{
    isClosing = true;
    sqlite3_close(database);
    isClosing = false;
    mappingCount = 0;
    std::ranges::fill(numbers, -1);
}

} // namespace winhost::database
