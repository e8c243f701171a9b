#include "registry/store.h"

#include "registry/cache.h"
#include "registry/handles.h"
#include "registry/tree.h"
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

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
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

// A key's number is higher than its parent's and is never used twice; the one row of `shape` has the highest that
// was used, and grows as well when a key goes. Names are UTF-16 as they were given; `folded` orders them.
constexpr const char* tables[] = {
    "CREATE TABLE keys(parent INTEGER NOT NULL, folded BLOB NOT NULL, id INTEGER NOT NULL UNIQUE, name BLOB NOT NULL,"
    " sum INTEGER NOT NULL, PRIMARY KEY(parent, folded)) WITHOUT ROWID",
    "CREATE TABLE vals(key INTEGER NOT NULL, folded BLOB NOT NULL, name BLOB NOT NULL, type INTEGER NOT NULL,"
    " data BLOB NOT NULL, sum INTEGER NOT NULL, PRIMARY KEY(key, folded)) WITHOUT ROWID",
    "CREATE TABLE shape(last INTEGER NOT NULL)",
};
constexpr const char* firstShape = "INSERT INTO shape VALUES(2)"; // behind the two roots

#define BELOW                                                                                                  \
    "WITH RECURSIVE below(id) AS (SELECT ?1 UNION SELECT keys.id FROM below JOIN keys ON keys.parent = below.id" \
    " WHERE keys.id > below.id) "

constexpr const char* statements[] = {
    "SELECT id, name, sum FROM keys WHERE parent = ?1 AND folded = ?2",
    "SELECT parent FROM keys WHERE id = ?1",
    "SELECT name, type, data, sum FROM vals WHERE key = ?1 AND folded = ?2",
    "SELECT folded, name, sum, id FROM keys WHERE parent = ?1 ORDER BY folded LIMIT ?3 OFFSET ?2",
    "SELECT folded, name, sum, id FROM keys WHERE parent = ?1 AND folded > ?2 ORDER BY folded LIMIT ?3",
    "SELECT folded, name, sum, type, data FROM vals WHERE key = ?1 ORDER BY folded LIMIT ?3 OFFSET ?2",
    "SELECT folded, name, sum, type, data FROM vals WHERE key = ?1 AND folded > ?2 ORDER BY folded LIMIT ?3",
    "SELECT count(*), max(length(name)) FROM keys WHERE parent = ?1",
    "SELECT count(*), max(length(name)), max(length(data)) FROM vals WHERE key = ?1",
    "SELECT last FROM shape",
    "UPDATE shape SET last = last + 1",
    "INSERT INTO keys(parent, folded, id, name, sum) VALUES(?1, ?2, ?3, ?4, ?5)",
    "INSERT INTO vals(key, folded, name, type, data, sum) VALUES(?1, ?2, ?3, ?4, ?5, ?6)"
    " ON CONFLICT(key, folded) DO UPDATE SET type = excluded.type, data = excluded.data, sum = excluded.sum",
    "DELETE FROM vals WHERE key = ?1 AND folded = ?2",
    "DELETE FROM keys WHERE id = ?1",
    "DELETE FROM vals WHERE key = ?1",
    BELOW "DELETE FROM vals WHERE key IN below",
    BELOW "DELETE FROM keys WHERE parent IN below",
};
static_assert(std::size(statements) == static_cast<std::size_t>(Sql::eCount));

LSTATUS statusOfErrno(int error)
{
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
        return ERROR_ACCESS_DENIED;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ERROR_DISK_FULL;
    case ENOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case EMFILE:
    case ENFILE:
        return ERROR_NO_SYSTEM_RESOURCES;
    default:
        return 0;
    }
}

/// For what SQLite answered; the system's own error, which it does not always tell, is still in errno.
LSTATUS statusOf(int code)
{
    constexpr int primary = 0xFF;
    const LSTATUS ofSystem = statusOfErrno(errno);
    switch (code & primary) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return ERROR_SUCCESS;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
        return ERROR_LOCK_FAILED;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return ERROR_ACCESS_DENIED;
    case SQLITE_FULL:
        return ERROR_DISK_FULL;
    case SQLITE_NOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case SQLITE_CANTOPEN:
        return ofSystem != 0 ? ofSystem : ERROR_CANTOPEN;
    case SQLITE_TOOBIG:
        return ERROR_INVALID_PARAMETER;
    case SQLITE_IOERR:
        return ofSystem != 0 ? ofSystem : ERROR_REGISTRY_IO_FAILED;
    default:
        return ERROR_REGISTRY_CORRUPT;
    }
}

sigset_t fileSizeSignal()
{
    sigset_t signal;
    sigemptyset(&signal);
    sigaddset(&signal, SIGXFSZ);
    return signal;
}

/// Makes the folder and those above it, as far as they are missing; leaves the cause in errno.
bool makeFolders(const std::string& folder)
{
    if (mkdir(folder.c_str(), folderMode) == 0 || errno == EEXIST) {
        return true;
    }
    const std::size_t above = folder.find_last_of('/');
    return errno == ENOENT && above != 0 && above != std::string::npos && makeFolders(folder.substr(0, above)) &&
           (mkdir(folder.c_str(), folderMode) == 0 || errno == EEXIST);
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

/// Which file a path leads to, and when the list of a folder changed.
struct Identity
{
    dev_t device = 0;
    ino_t number = 0;
    timespec changed = {};
    uid_t owner = 0;

    bool isSameFile(const Identity& other) const { return device == other.device && number == other.number; }
    bool isSameList(const Identity& other) const
    {
        return isSameFile(other) && changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }
};

Identity identityOf(const std::string& path)
{
    struct stat found = {};
    return stat(path.c_str(), &found) == 0 ? Identity{found.st_dev, found.st_ino, found.st_mtim, found.st_uid}
                                           : Identity{};
}

// ---- The version --------------------------------------------------------------------------------------------

// The header of the write-ahead log's index, in shared memory, ends in a sum of itself, which every commit of any
// process changes: https://www.sqlite.org/walformat.html. It is mapped a second time, at an address that stays.
constexpr std::uint32_t indexFormat = 3007000;
constexpr std::size_t sumAt = 5; // in units of 8 bytes
constexpr std::size_t pageSize = 4096;

std::atomic<std::uint64_t*> versionPage = nullptr;

/// Tells where SQLite has the index in memory.
int mapIndex(sqlite3* database, bool create, void volatile*& index)
{
    constexpr int regionSize = 32768;
    sqlite3_file* file = nullptr;
    index = nullptr;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    errno = 0;
    return file == nullptr || file->pMethods == nullptr || file->pMethods->iVersion < 2
               ? SQLITE_MISUSE
               : file->pMethods->xShmMap(file, 0, regionSize, create ? 1 : 0, &index);
}

void hideVersion()
{
    void* const page = versionPage.load();
    if (page != nullptr) {
        mmap(page, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
    }
}

void showVersion(sqlite3* database)
{
    if (versionPage.load() == nullptr) {
        void* const page = mmap(nullptr, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (page == MAP_FAILED) {
            return;
        }
        versionPage.store(static_cast<std::uint64_t*>(page));
    }
    void volatile* index = nullptr;
    if (mapIndex(database, false, index) == SQLITE_OK && index != nullptr && *static_cast<std::uint32_t volatile*>(index) == indexFormat) {
        // An old size of 0 maps the same pages once more.
        mremap(const_cast<void*>(index), 0, pageSize, MREMAP_MAYMOVE | MREMAP_FIXED, versionPage.load());
    }
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

// ---- The connection -----------------------------------------------------------------------------------------

class Store
{
public:
    std::mutex mutex;

    /// Makes the connection ready; the lock is the caller's.
    LSTATUS prepare(bool forWriting)
    {
        if (m_database != nullptr && hasMoved(forWriting)) {
            close();
        }
        if (m_database != nullptr && m_whyReadOnly != ERROR_SUCCESS && forWriting) {
            close();
        }
        return m_database != nullptr ? ERROR_SUCCESS : open();
    }

    void close()
    {
        hideVersion();
        for (sqlite3_stmt*& statement : m_prepared) {
            sqlite3_finalize(statement);
            statement = nullptr;
        }
        sqlite3_close(m_database);
        m_database = nullptr;
        if (m_index >= 0) {
            ::close(std::exchange(m_index, -1));
        }
        cache().forget();
    }

    int run(const char* sql) const
    {
        errno = 0;
        return sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr);
    }

    /// Does not wait for other writers.
    LSTATUS begin(bool forManyCalls)
    {
        LSTATUS status = prepare(true);
        if (status != ERROR_SUCCESS || m_whyReadOnly != ERROR_SUCCESS) {
            return status != ERROR_SUCCESS ? status : m_whyReadOnly;
        }
        if (isLost() || (forManyCalls && m_isShared)) {
            return isLost() ? ERROR_CANTWRITE : ERROR_INVALID_PARAMETER;
        }
        sqlite3_busy_timeout(m_database, 0);
        status = statusOf(run(m_isShared ? "SAVEPOINT call" : "BEGIN IMMEDIATE"));
        sqlite3_busy_timeout(m_database, longestWait.count());
        return status;
    }

    LSTATUS commit() const { return statusOf(run(m_isShared ? "RELEASE call" : "COMMIT")); }

    void undo() const
    {
        if (sqlite3_get_autocommit(m_database) == 0) {
            run(m_isShared ? "ROLLBACK TO call; RELEASE call" : "ROLLBACK");
        }
    }

    int prepared(Sql sql, sqlite3_stmt*& statement)
    {
        sqlite3_stmt*& kept = m_prepared[static_cast<std::size_t>(sql)];
        const int failed = kept != nullptr ? SQLITE_OK
                                           : sqlite3_prepare_v3(m_database, statements[static_cast<std::size_t>(sql)], -1,
                                                                SQLITE_PREPARE_PERSISTENT, &kept, nullptr);
        statement = kept;
        return failed;
    }

/// One transaction for the calls to come.
    bool isShared() const { return m_isShared; }
    /// An error of the disk ends it on its own.
    bool isLost() const { return m_isShared && (m_database == nullptr || sqlite3_get_autocommit(m_database) != 0); }
    void share(bool shared)
    {
        m_isShared = shared;
        if (shared) {
            hideVersion();
        } else if (m_database != nullptr) {
            showVersion(m_database);
        }
    }

private:
    static constexpr const char* suffixes[] = {"", "-wal", "-shm"};

    /// Tries again while another process makes the store or mends it after a crash.
    LSTATUS open()
    {
        const NoFileSizeSignal noSignal;
        return retry([this] { return openOnce(); });
    }

    LSTATUS openOnce()
    {
        if (m_file.empty()) {
            m_folder = dataFolder() + "/winhost";
            m_file = m_folder + "/registry.db";
        }
        if (!makeFolders(m_folder)) {
            const LSTATUS status = statusOfErrno(errno);
            return status != 0 ? status : ERROR_CANTOPEN;
        }
        writeInPlace(m_folder);
        const int made = ::open(m_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, fileMode);
        const LSTATUS failedToMake = made < 0 ? statusOfErrno(errno) : ERROR_SUCCESS;
        if (made >= 0) {
            ::close(made);
        }
        for (const std::string& each : {m_folder, m_file}) {
            const Identity found = identityOf(each);
            if (found.number != 0 && found.owner != geteuid()) {
                return ERROR_ACCESS_DENIED;
            }
        }
        m_whyReadOnly = failedToMake;
        LSTATUS status = failedToMake != ERROR_SUCCESS ? failedToMake : connect(SQLITE_OPEN_READWRITE, m_file);
        if (status == ERROR_ACCESS_DENIED || status == ERROR_DISK_FULL || status == ERROR_CANTOPEN) {
            close();
            m_whyReadOnly = status;
            const std::string uri = uriOf(m_file) + "?mode=ro&readonly_shm=1";
            const LSTATUS failed = connect(SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, uri);
            status = failed == ERROR_SUCCESS || failed == ERROR_REGISTRY_CORRUPT ? failed : status;
        }
        if (status != ERROR_SUCCESS) {
            close();
            return status;
        }
        m_listing = identityOf(m_folder);
        for (std::size_t i = 0; i < std::size(suffixes); ++i) {
            m_opened[i] = identityOf(m_file + suffixes[i]);
        }
        showVersion(m_database);
        sqlite3_busy_timeout(m_database, longestWait.count());
        return ERROR_SUCCESS;
    }

    static std::string uriOf(const std::string& file)
    {
        std::string uri = "file:";
        constexpr char digits[] = "0123456789ABCDEF";
        for (const char each : file) {
            const auto byte = static_cast<unsigned char>(each);
            if (std::strchr("%?#", each) != nullptr) {
                uri += {'%', digits[byte >> 4], digits[byte & 15]};
            } else {
                uri += each;
            }
        }
        return uri;
    }

    LSTATUS connect(int flags, const std::string& name)
    {
        errno = 0;
        const int failed =
            sqlite3_open_v2(name.c_str(), &m_database, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
        if (failed != SQLITE_OK) {
            return statusOf(failed);
        }
        for (const int disabled : {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW,
                                   SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION}) {
            sqlite3_db_config(m_database, disabled, 0, nullptr);
        }
        for (const int enabled : {SQLITE_DBCONFIG_DEFENSIVE, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE}) {
            sqlite3_db_config(m_database, enabled, 1, nullptr);
        }
        int persist = 1;
        sqlite3_file_control(m_database, "main", SQLITE_FCNTL_PERSIST_WAL, &persist);
        const bool forWriting = (flags & SQLITE_OPEN_READWRITE) != 0;
        if (const LSTATUS status = forWriting ? allocateIndex() : ERROR_SUCCESS) {
            return status;
        }
        int result = run("PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0; PRAGMA temp_store = MEMORY;"
                         "PRAGMA synchronous = NORMAL; PRAGMA journal_size_limit = 4194304");
        if (result == SQLITE_OK && forWriting) {
            result = run("PRAGMA journal_mode = WAL");
        }
        if (result != SQLITE_OK) {
            return statusOf(result);
        }
        const LSTATUS status = checkSchema();
        return status == ERROR_FILE_NOT_FOUND && forWriting ? create() : status;
    }

    /// Gives the log's index its room on the disk, for a log of 32 MB: it is written to in memory, where a full disk
    /// is a signal and not an error.
    LSTATUS allocateIndex()
    {
        constexpr off_t size = 65536;
        void volatile* index = nullptr;
        if (const int failed = mapIndex(m_database, true, index)) {
            return statusOf(failed);
        }
        m_index = ::open((m_file + "-shm").c_str(), O_RDWR | O_CLOEXEC);
        if (m_index < 0) {
            return ERROR_CANTOPEN;
        }
        return statusOfErrno(posix_fallocate(m_index, 0, size));
    }

    /// ERROR_FILE_NOT_FOUND for an empty file, ERROR_BADDB for another's.
    LSTATUS checkSchema() const
    {
        sqlite3_stmt* statement = nullptr;
        int result = sqlite3_prepare_v2(
            m_database, "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL ORDER BY rowid", -1, &statement, nullptr);
        std::size_t known = 0;
        std::size_t all = 0;
        while (result == SQLITE_OK && (result = sqlite3_step(statement)) == SQLITE_ROW) {
            const auto* const sql = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
            const std::size_t matches = all < std::size(tables) && sql != nullptr && std::strcmp(sql, tables[all]) == 0;
            known += matches;
            ++all;
            result = SQLITE_OK;
        }
        sqlite3_finalize(statement);
        const LSTATUS status = statusOf(result);
        return status != ERROR_SUCCESS                                ? status
               : all == 0                                             ? ERROR_FILE_NOT_FOUND
               : known == std::size(tables) && all == known ? ERROR_SUCCESS
                                                                      : ERROR_BADDB;
    }

    LSTATUS create()
    {
        int result = run("BEGIN IMMEDIATE");
        if (result != SQLITE_OK) {
            return statusOf(result);
        }
        LSTATUS status = checkSchema(); // another process may have been first
        if (status == ERROR_FILE_NOT_FOUND) {
            for (const char* const table : tables) {
                result = result == SQLITE_OK ? run(table) : result;
            }
            result = result == SQLITE_OK ? run(firstShape) : result;
            status = statusOf(result);
            status = status == ERROR_SUCCESS ? createFirstKeys() : status;
        }
        if (status == ERROR_SUCCESS) {
            status = statusOf(run("COMMIT"));
        }
        if (status != ERROR_SUCCESS) {
            run("ROLLBACK");
        }
        return status;
    }

    /// Whether the file that was opened is no longer the one that the path leads to. A look at the folder is enough
    /// for a read, since its time tells that nothing came or went.
    bool hasMoved(bool thoroughly)
    {
        const Identity listing = identityOf(m_folder);
        if (!thoroughly && listing.isSameList(m_listing)) {
            return false;
        }
        for (std::size_t i = 0; i < std::size(suffixes); ++i) {
            if (!identityOf(m_file + suffixes[i]).isSameFile(m_opened[i])) {
                return true;
            }
        }
        m_listing = listing;
        return false;
    }

    std::string m_folder;
    std::string m_file;
    sqlite3* m_database = nullptr;
    LSTATUS m_whyReadOnly = ERROR_SUCCESS;
    int m_index = -1; // kept open, since closing it would drop the process's locks on the file
    bool m_isShared = false;
    Identity m_listing;
    Identity m_opened[std::size(suffixes)];
    sqlite3_stmt* m_prepared[static_cast<std::size_t>(Sql::eCount)] = {};
};

/// Never destroyed: it may be used while the process ends.
Store& store()
{
    static Store* const created = [] {
        // SQLite must not be open across a fork: locks are a process's own, and its tables of them would be copied.
        pthread_atfork(
            [] {
                store().mutex.lock();
                store().close();
                cache().lock();
                lockHandles();
            },
            [] {
                unlockHandles();
                cache().unlock();
                store().mutex.unlock();
            },
            [] {
                unlockHandles();
                cache().unlock();
                store().mutex.unlock();
            });
        return new Store;
    }();
    return *created;
}

/// Waits for other writers outside the lock, so that this process's readers need not.
LSTATUS beginWriting(bool forManyCalls)
{
    return retry([forManyCalls] {
        store().mutex.lock();
        const LSTATUS status = store().begin(forManyCalls);
        if (status != ERROR_SUCCESS) {
            store().mutex.unlock();
        }
        return status;
    });
}

} // namespace

NoFileSizeSignal::NoFileSizeSignal()
{
    sigset_t signal = fileSizeSignal();
    pthread_sigmask(SIG_BLOCK, &signal, &m_before);
}

NoFileSizeSignal::~NoFileSizeSignal()
{
    constexpr timespec atOnce = {};
    const sigset_t signal = fileSizeSignal();
    sigtimedwait(&signal, nullptr, &atOnce);
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

std::uint64_t storeVersion()
{
    const std::uint64_t* const page = versionPage.load(std::memory_order_acquire);
    return page != nullptr ? __atomic_load_n(page + sumAt, __ATOMIC_ACQUIRE) : 0;
}

Access::Access(Purpose purpose) : m_purpose(purpose)
{
    if (purpose == eWriting) {
        m_signal.emplace();
        m_status = beginWriting(false);
        m_isLocked = m_status == ERROR_SUCCESS;
        return;
    }
    store().mutex.lock();
    m_isLocked = true;
    m_status = store().prepare(false);
}

Access::~Access()
{
    if (m_isLocked) {
        if (m_purpose == eWriting && !m_isCommitted) {
            store().undo();
        }
        store().mutex.unlock();
    }
}

LSTATUS Access::commit()
{
    const LSTATUS status = store().commit();
    m_isCommitted = status == ERROR_SUCCESS;
    return status;
}

Query::Query(Sql sql)
{
    check(store().prepared(sql, m_statement));
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
    check(sqlite3_bind_blob64(m_statement, ++m_bound, bytes.data() != nullptr ? bytes.data() : "", bytes.size(),
                              SQLITE_STATIC));
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
    using namespace winhost::registry;
    const NoFileSizeSignal noSignal;
    const LSTATUS status = beginWriting(true);
    if (status == ERROR_SUCCESS) {
        store().share(true);
        store().mutex.unlock();
    }
    return status;
}

LSTATUS winhostEndRegistryChanges(BOOL keep)
{
    using namespace winhost::registry;
    const NoFileSizeSignal noSignal;
    const std::lock_guard<std::mutex> lock(store().mutex);
    if (!store().isShared()) {
        return ERROR_INVALID_PARAMETER;
    }
    const bool isLost = store().isLost();
    store().share(false);
    const LSTATUS status = isLost || keep == FALSE ? ERROR_SUCCESS : store().commit();
    if (!isLost) {
        store().undo();
    }
    return isLost && keep != FALSE ? ERROR_CANTWRITE : status;
}
