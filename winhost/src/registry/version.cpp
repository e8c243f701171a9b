#include "registry/version.h"

#include "registry/store.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mman.h>

#include <atomic>
#include <cerrno>

namespace winhost::registry {

namespace {

constexpr std::uint32_t indexFormat = 3007000;
constexpr std::size_t sumAt = 5; // in units of 8 bytes: the header's sum of itself
constexpr std::size_t countAt =
    14; // in units of 4 bytes: in the header's second copy, written before the first
constexpr std::size_t pageSize = 4096;
constexpr int regionSize = 32768;

// Stays where it is while the process lives: a page without content, or the index's first page once more.
std::atomic<std::uint64_t*> page = nullptr;

/// Null where SQLite cannot share memory.
sqlite3_file* fileOf(sqlite3* database)
{
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    const bool canMap = file != nullptr && file->pMethods != nullptr && file->pMethods->iVersion >= 2;
    return canMap ? file : nullptr;
}

/// Tells where SQLite has the index in memory.
int mapIndex(sqlite3_file* file, bool create, void volatile*& index)
{
    errno = 0;
    return file != nullptr ? file->pMethods->xShmMap(file, 0, regionSize, create ? 1 : 0, &index)
                           : SQLITE_CANTOPEN;
}

} // namespace

int allocateIndex(sqlite3* database, int descriptor)
{
    sqlite3_file* const file = fileOf(database);
    void volatile* index = nullptr;
    int failed = mapIndex(file, true, index);
    if (failed == SQLITE_OK) {
        errno = posix_fallocate(descriptor, 0, off_t{2} * regionSize);
        failed = errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? SQLITE_FULL : SQLITE_OK;
    }
    if (failed != SQLITE_OK && file != nullptr) {
        const int cause = errno;
        file->pMethods->xShmUnmap(file, 0); // nobody else would, since the log is not open
        errno = cause;
    }
    return failed;
}

void hideVersion()
{
    if (page != nullptr) {
        static_cast<void>(mmap(page, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0));
    }
}

void showVersion(sqlite3* database)
{
    if (page == nullptr) {
        void* const made = mmap(nullptr, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        page = made != MAP_FAILED ? static_cast<std::uint64_t*>(made) : nullptr;
    }
    void volatile* index = nullptr;
    if (page != nullptr && mapIndex(fileOf(database), false, index) == SQLITE_OK && index != nullptr &&
        *static_cast<std::uint32_t volatile*>(index) == indexFormat) {
        // An old size of 0 maps the same pages once more.
        static_cast<void>(
            mremap(const_cast<void*>(index), 0, pageSize, MREMAP_MAYMOVE | MREMAP_FIXED, page.load()));
    }
}

std::uint64_t storeVersion()
{
    const std::uint64_t* const header = page.load(std::memory_order_acquire);
    return header != nullptr ? __atomic_load_n(header + sumAt, __ATOMIC_ACQUIRE) : 0;
}

std::uint32_t changeCount()
{
    const auto* const header = reinterpret_cast<const std::uint32_t*>(page.load(std::memory_order_acquire));
    return header != nullptr ? __atomic_load_n(header + countAt, __ATOMIC_ACQUIRE) : 0;
}

} // namespace winhost::registry
