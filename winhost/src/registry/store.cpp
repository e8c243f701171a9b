#include "registry/store.h"

#include "registry/cache.h"
#include "registry/handles.h"
#include "user_folders.h"

#include <sqlite3.h>
#include <winhost/changes.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <initializer_list>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace winhost::registry {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestWait{5000};
constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

// A key's number is higher than its parent's and is never used twice; the row of `shape` has the highest that
// was used, and grows when a key goes, too. Names are UTF-16 as they were given; `folded` orders them.
constexpr std::string_view schema =
    "CREATE TABLE keys(parent INTEGER NOT NULL, folded BLOB NOT NULL, id INTEGER NOT NULL UNIQUE, name BLOB "
    "NOT NULL,"
    " sum INTEGER NOT NULL, PRIMARY KEY(parent, folded)) WITHOUT ROWID;"
    "CREATE TABLE vals(key INTEGER NOT NULL, folded BLOB NOT NULL, name BLOB NOT NULL, type INTEGER NOT NULL,"
    " data BLOB NOT NULL, sum INTEGER NOT NULL, PRIMARY KEY(key, folded)) WITHOUT ROWID;"
    "CREATE TABLE shape(last INTEGER NOT NULL)";

struct Meaning
{
    LSTATUS status;
    std::initializer_list<int> codes;
};

LSTATUS meaning(int code, std::initializer_list<Meaning> table, LSTATUS otherwise)
{
    for (const auto& [status, codes] : table) {
        if (std::find(codes.begin(), codes.end(), code) != codes.end()) {
            return status;
        }
    }
    return otherwise;
}

LSTATUS statusOfErrno(LSTATUS otherwise)
{
    return meaning(errno,
                   {{ERROR_ACCESS_DENIED, {EACCES, EPERM, EROFS}},
                    {ERROR_DISK_FULL, {ENOSPC, EDQUOT, EFBIG}},
                    {ERROR_NOT_ENOUGH_MEMORY, {ENOMEM}},
                    {ERROR_NO_SYSTEM_RESOURCES, {EMFILE, ENFILE}}},
                   otherwise);
}

/// For what SQLite answered; the system's own error, which it does not always tell, is still in errno.
LSTATUS statusOf(int code)
{
    constexpr int primary = 0xFF;
    return meaning(code & primary,
                   {{ERROR_SUCCESS, {SQLITE_OK, SQLITE_ROW, SQLITE_DONE}},
                    {ERROR_LOCK_FAILED, {SQLITE_BUSY, SQLITE_LOCKED, SQLITE_PROTOCOL}},
                    {ERROR_ACCESS_DENIED, {SQLITE_READONLY, SQLITE_PERM}},
                    {ERROR_DISK_FULL, {SQLITE_FULL}},
                    {ERROR_NOT_ENOUGH_MEMORY, {SQLITE_NOMEM}},
                    {ERROR_INVALID_PARAMETER, {SQLITE_TOOBIG}},
                    {statusOfErrno(ERROR_CANTOPEN), {SQLITE_CANTOPEN}},
                    {statusOfErrno(ERROR_REGISTRY_IO_FAILED), {SQLITE_IOERR}}},
                   ERROR_REGISTRY_CORRUPT);
}

/// Runs work() again while it answers ERROR_LOCK_FAILED, for a bounded time, and gives its last answer.
template <typename Work>
LSTATUS retry(Work work)
{
    constexpr std::chrono::microseconds longestPause{5000};
    const Clock::time_point end = Clock::now() + longestWait;
    for (std::chrono::microseconds pause{50};; pause = std::min(2 * pause, longestPause)) {
        const LSTATUS status = work();
        if (status != ERROR_LOCK_FAILED || Clock::now() >= end) {
            return status;
        }
        std::this_thread::sleep_for(pause);
    }
}

/// Makes the folder and those above it, as far as they are missing; leaves the cause in errno.
bool makeFolders(const std::string& folder)
{
    const auto make = [&] { return mkdir(folder.c_str(), folderMode) == 0 || errno == EEXIST; };
    const std::size_t above = folder.find_last_of('/');
    return make() || (errno == ENOENT && above != 0 && makeFolders(folder.substr(0, above)) && make());
}

/// On a file system that writes changed data elsewhere, what is mapped would need new room for each change.
void writeInPlace(const std::string& folder)
{
    const int opened = open(folder.c_str(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    if (opened >= 0 && ioctl(opened, FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_NOCOW_FL) == 0) {
        flags |= FS_NOCOW_FL;
        ioctl(opened, FS_IOC_SETFLAGS, &flags); // files that are made in the folder take it over
    }
    close(opened);
}

/// All 0 for what is not there.
struct stat fileAt(const std::string& path)
{
    struct stat found = {};
    stat(path.c_str(), &found);
    return found;
}

bool isSameFile(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool isSameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// A write past the process's file size limit is an error, unless the program wants its signal.
void ignoreFileSizeSignal()
{
    struct sigaction wanted = {};
    if (sigaction(SIGXFSZ, nullptr, &wanted) == 0 && wanted.sa_handler == SIG_DFL) {
        wanted.sa_handler = SIG_IGN;
        sigaction(SIGXFSZ, &wanted, nullptr);
    }
}

// ---- The store's version
//
// The header of the write-ahead log's index, which all processes share in memory and every commit changes. It
// is an interface of SQLite's: https://www.sqlite.org/walformat.html. Where it has another format there is no
// version.

constexpr std::uint32_t indexFormat = 3007000;
constexpr std::size_t sumAt = 5;    // in units of 8 bytes: the header's sum of itself
constexpr std::size_t countAt = 14; // in units of 4 bytes: in the second copy, written before the first
constexpr std::size_t pageSize = 4096;
constexpr int regionSize = 32768;

// Stays where it is while the process lives: a page without content, or the index's first page once more.
std::atomic<std::uint64_t*> page = nullptr;

/// Null where SQLite cannot share memory.
sqlite3_file* fileOf(sqlite3* database)
{
    sqlite3_file* file = nullptr;
    if (database != nullptr) {
        sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    }
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

/// Makes the index and gives it its room on the disk, for a log of 32 MB: it is written to in memory, where a
/// full disk would be a signal and not an error. An SQLite error.
int allocateIndex(sqlite3* database, int descriptor)
{
    sqlite3_file* const file = fileOf(database);
    void volatile* index = nullptr;
    int failed = mapIndex(file, true, index);
    if (failed == SQLITE_OK) {
        errno = posix_fallocate(descriptor, 0, off_t{2} * regionSize);
        failed = errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? SQLITE_FULL : SQLITE_OK;
    }
    return failed;
}

/// Where the log did not come to be opened: SQLite would leave the index where it is. Keeps errno.
void unmapIndex(sqlite3* database)
{
    const int cause = errno;
    if (sqlite3_file* const file = fileOf(database)) {
        file->pMethods->xShmUnmap(file, 0);
    }
    errno = cause;
}

/// From here on storeVersion tells none.
void hideVersion()
{
    if (page != nullptr) {
        static_cast<void>(mmap(page, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0));
    }
}

/// From here on storeVersion tells the version.
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

/// Grows by 1 with each commit of any process.
std::uint32_t changeCount()
{
    const auto* const header = reinterpret_cast<const std::uint32_t*>(page.load(std::memory_order_acquire));
    return header != nullptr ? __atomic_load_n(header + countAt, __ATOMIC_ACQUIRE) : 0;
}

// ---- The connection

Statement beginAll{"BEGIN IMMEDIATE"};
Statement commitAll{"COMMIT"};
Statement beginCall{"SAVEPOINT call"}; // within a change over many calls
Statement commitCall{"RELEASE call"};

class Store
{
public:
    std::mutex mutex; // of all that follows

    /// Makes the connection ready for reading.
    LSTATUS prepare(bool thoroughly)
    {
        if (m_database != nullptr &&
            (hasMoved(thoroughly) || (thoroughly && m_whyReadOnly != ERROR_SUCCESS))) {
            close();
        }
        // Again while another process makes the store, or mends it after a crash.
        return m_database != nullptr ? ERROR_SUCCESS : retry([this] { return open(); });
    }

    /// Does not wait for other writers.
    LSTATUS begin(bool forManyCalls)
    {
        if (const LSTATUS status = prepare(true)) {
            return status;
        }
        if (m_whyReadOnly != ERROR_SUCCESS || isLost()) {
            return isLost() ? ERROR_CANTWRITE : m_whyReadOnly;
        }
        if (forManyCalls && m_isShared) {
            return ERROR_INVALID_PARAMETER;
        }
        sqlite3_busy_timeout(m_database, 0);
        const LSTATUS status = Query(m_isShared ? beginCall : beginAll).run();
        sqlite3_busy_timeout(m_database, longestWait.count());
        if (status == ERROR_SUCCESS && forManyCalls) {
            m_isShared = true;
            hideVersion();
        }
        return status;
    }

    LSTATUS commit() { return Query(m_isShared ? commitCall : commitAll).run(); }

    void undo() const
    {
        if (sqlite3_get_autocommit(m_database) == 0) {
            run(m_isShared ? "ROLLBACK TO call; RELEASE call" : "ROLLBACK");
        }
    }

    LSTATUS endShared(bool keep)
    {
        if (!m_isShared || isLost()) {
            return std::exchange(m_isShared, false) ? ERROR_CANTWRITE : ERROR_INVALID_PARAMETER;
        }
        m_isShared = false;
        const LSTATUS status = keep ? commit() : ERROR_SUCCESS;
        undo();
        showVersion(m_database);
        return status;
    }

    int prepared(Statement& statement) const
    {
        if (statement.connection == m_connection) {
            return SQLITE_OK;
        }
        const int failed = sqlite3_prepare_v3(m_database, statement.sql, -1, SQLITE_PREPARE_PERSISTENT,
                                              &statement.prepared, nullptr);
        statement.connection = failed == SQLITE_OK ? m_connection : 0;
        return failed;
    }

    void close()
    {
        hideVersion();
        while (sqlite3_stmt* const statement =
                   m_database != nullptr ? sqlite3_next_stmt(m_database, nullptr) : nullptr) {
            sqlite3_finalize(statement);
        }
        sqlite3_close(m_database);
        m_database = nullptr;
        if (m_index >= 0) {
            ::close(std::exchange(m_index, -1));
        }
        cache().forget();
    }

private:
    static constexpr const char* suffixes[] = {"", "-wal", "-shm"};

    LSTATUS run(const char* sql) const
    {
        errno = 0;
        return statusOf(sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr));
    }

    /// For writing, else for reading.
    LSTATUS open()
    {
        if (m_file.empty()) {
            m_folder = dataFolder() + "/winhost";
            m_file = m_folder + "/registry.db";
            ignoreFileSizeSignal();
        }
        if (!makeFolders(m_folder)) {
            return statusOfErrno(ERROR_CANTOPEN);
        }
        writeInPlace(m_folder);
        const int made = ::open(m_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, fileMode);
        m_whyReadOnly = made < 0 ? statusOfErrno(ERROR_CANTOPEN) : ERROR_SUCCESS;
        ::close(made);
        m_listing = fileAt(m_folder);
        if (m_listing.st_uid != geteuid() || (made >= 0 && fileAt(m_file).st_uid != geteuid())) {
            return ERROR_ACCESS_DENIED;
        }
        LSTATUS status = m_whyReadOnly;
        if (status == ERROR_SUCCESS) {
            status = connect(true);
        }
        if (status == ERROR_ACCESS_DENIED || status == ERROR_DISK_FULL || status == ERROR_CANTOPEN) {
            close();
            m_whyReadOnly = status;
            const LSTATUS failed = connect(false);
            status = failed == ERROR_SUCCESS || failed == ERROR_REGISTRY_CORRUPT ? failed : status;
        }
        if (status != ERROR_SUCCESS) {
            close();
            return status;
        }
        m_listing = fileAt(m_folder);
        for (std::size_t i = 0; i < std::size(suffixes); ++i) {
            m_opened[i] = fileAt(m_file + suffixes[i]);
        }
        showVersion(m_database);
        sqlite3_busy_timeout(m_database, longestWait.count());
        return ERROR_SUCCESS;
    }

    LSTATUS connect(bool forWriting)
    {
        std::string uri = "file:";
        for (const char each : m_file) {
            char coded[sizeof "%FF"];
            std::snprintf(coded, sizeof coded, "%%%02X", static_cast<unsigned char>(each));
            uri += coded;
        }
        uri += forWriting ? "?mode=rw" : "?mode=ro&readonly_shm=1";
        constexpr int flags =
            SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
        errno = 0;
        int failed = sqlite3_open_v2(uri.c_str(), &m_database, flags, nullptr);
        if (failed == SQLITE_OK && forWriting) {
            m_index = ::open((m_file + suffixes[2]).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, fileMode);
            failed = m_index < 0 ? SQLITE_CANTOPEN : allocateIndex(m_database, m_index);
        }
        if (failed != SQLITE_OK) {
            unmapIndex(m_database);
            return statusOf(failed);
        }
        ++m_connection;
        for (const int option : {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW,
                                 SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION}) {
            sqlite3_db_config(m_database, option, 0, nullptr);
        }
        sqlite3_db_config(m_database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(m_database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        int keepsLog = 1;
        sqlite3_file_control(m_database, "main", SQLITE_FCNTL_PERSIST_WAL, &keepsLog);
        LSTATUS status = run("PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0; PRAGMA temp_store = MEMORY;"
                             "PRAGMA synchronous = NORMAL; PRAGMA journal_size_limit = 4194304");
        if (status == ERROR_SUCCESS && forWriting) {
            status = run("PRAGMA journal_mode = WAL");
        }
        if (status != ERROR_SUCCESS) {
            unmapIndex(m_database);
        }
        status = status == ERROR_SUCCESS ? checkSchema() : status;
        return status == ERROR_FILE_NOT_FOUND && forWriting ? create() : status;
    }

    /// ERROR_FILE_NOT_FOUND for an empty file, ERROR_BADDB for another's.
    LSTATUS checkSchema()
    {
        Statement all{"SELECT group_concat(sql, ';') FROM sqlite_schema WHERE sql NOTNULL"};
        Query query(all);
        if (!query.next()) {
            return query.status();
        }
        const std::string_view found = query.bytes(0);
        return found.empty() ? ERROR_FILE_NOT_FOUND : found == schema ? ERROR_SUCCESS : ERROR_BADDB;
    }

    LSTATUS create()
    {
        LSTATUS status = run("BEGIN IMMEDIATE");
        if (status != ERROR_SUCCESS) {
            return status;
        }
        status = checkSchema(); // another process may have been first
        if (status == ERROR_FILE_NOT_FOUND) {
            status = run(schema.data());
            status = status == ERROR_SUCCESS ? createFirstKeys() : status;
        }
        status = status == ERROR_SUCCESS ? commit() : status;
        undo();
        return status;
    }

    /// Whether the path leads to another file than the one that was opened. The folder's time tells that
    /// nothing came or went; for a read it is looked at once in a tick of the coarse clock, some 1 to 10 ms.
    bool hasMoved(bool thoroughly)
    {
        timespec now = {};
        clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
        if (!thoroughly && isSameTime(now, m_checked)) {
            return false;
        }
        m_checked = now;
        const struct stat listing = fileAt(m_folder);
        if (isSameFile(listing, m_listing) && isSameTime(listing.st_mtim, m_listing.st_mtim)) {
            return false;
        }
        for (std::size_t i = 0; i < std::size(suffixes); ++i) {
            if (!isSameFile(fileAt(m_file + suffixes[i]), m_opened[i])) {
                return true;
            }
        }
        m_listing = listing;
        return false;
    }

    /// An error of the disk ends a transaction on its own, and a fork does.
    bool isLost() const
    {
        return m_isShared && (m_database == nullptr || sqlite3_get_autocommit(m_database) != 0);
    }

    std::string m_folder;
    std::string m_file;
    sqlite3* m_database = nullptr;
    unsigned m_connection = 0;             // how many there were
    int m_index = -1;                      // closing it would drop the process's locks on the file
    LSTATUS m_whyReadOnly = ERROR_SUCCESS; // why the store is open for reading alone
    bool m_isShared = false;               // one transaction for many calls
    timespec m_checked = {};
    struct stat m_listing = {};
    struct stat m_opened[std::size(suffixes)] = {};
};

Store& store();

// SQLite must not be open across a fork: locks are a process's own, and its lists of them would be copied.

void beforeFork()
{
    store().mutex.lock();
    store().close();
    handlesMutex().lock();
}

void afterFork()
{
    handlesMutex().unlock();
    store().mutex.unlock();
}

void afterForkInChild()
{
    abandonCache(); // a thread that is no more may have locked a part of it
    afterFork();
}

Store& store()
{
    static Store* const created = [] { // never destroyed: it may be used while the process ends
        pthread_atfork(beforeFork, afterFork, afterForkInChild);
        return new Store;
    }();
    return *created;
}

} // namespace

std::uint64_t storeVersion()
{
    const std::uint64_t* const header = page.load(std::memory_order_acquire);
    return header != nullptr ? __atomic_load_n(header + sumAt, __ATOMIC_ACQUIRE) : 0;
}

Access::Access(Purpose purpose) : m_lock(store().mutex, std::defer_lock), m_purpose(purpose)
{
    if (purpose == eReading) {
        m_lock.lock();
        m_status = store().prepare(false);
        return;
    }
    // Waits for other writers without the lock, so that this process's readers need not.
    m_status = retry([&] {
        m_lock.lock();
        const LSTATUS status = store().begin(purpose == eWritingOn);
        if (status != ERROR_SUCCESS) {
            m_lock.unlock();
        }
        return status;
    });
}

Access::~Access()
{
    if (m_purpose == eWriting && m_lock.owns_lock()) {
        store().undo();
    }
}

LSTATUS Access::commit()
{
    const std::uint32_t before = changeCount();
    const LSTATUS status = store().commit();
    const std::uint64_t version = storeVersion();
    m_versionBehind = status == ERROR_SUCCESS && changeCount() == before + 1 ? version : 0;
    return status;
}

Query::Query(Statement& statement)
{
    check(store().prepared(statement));
    m_statement = statement.prepared;
}

Query::~Query()
{
    sqlite3_reset(m_statement);
}

Query& Query::with(std::int64_t number)
{
    check(sqlite3_bind_int64(m_statement, ++m_bound, number));
    return *this;
}

Query& Query::with(std::string_view bytes)
{
    const void* const data = bytes.data() != nullptr ? bytes.data() : "";
    check(sqlite3_bind_blob64(m_statement, ++m_bound, data, bytes.size(), SQLITE_STATIC));
    return *this;
}

bool Query::next()
{
    if (m_status != ERROR_SUCCESS) {
        return false;
    }
    errno = 0;
    const int result = sqlite3_step(m_statement);
    check(result);
    return result == SQLITE_ROW;
}

LSTATUS Query::run()
{
    while (next()) {
    }
    return m_status;
}

std::int64_t Query::number(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

std::string_view Query::bytes(int column) const
{
    const auto* const data = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    return {data, data != nullptr ? static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)) : 0};
}

void Query::check(int result)
{
    if (m_status == ERROR_SUCCESS) {
        m_status = statusOf(result);
    }
}

} // namespace winhost::registry

LSTATUS winhostBeginRegistryChanges()
{
    using winhost::registry::Access;
    return Access(Access::eWritingOn).status();
}

LSTATUS winhostEndRegistryChanges(BOOL keep)
{
    const std::lock_guard<std::mutex> lock(winhost::registry::store().mutex);
    return winhost::registry::store().endShared(keep != FALSE);
}
