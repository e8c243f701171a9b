#include "database/database.h"

#include "last_error.h"
#include "user_folders.h"

#include <sqlite3.h>

#include <fcntl.h>
#include <linux/fs.h>
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
#include <thread>
#include <utility>

namespace winhost::database {

namespace {

constexpr std::chrono::milliseconds longestWait{5000};
constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;
constexpr off_t formatAt = 18;

constexpr const char* options = "PRAGMA cell_size_check = ON; PRAGMA trusted_schema = OFF; PRAGMA mmap_size "
                                "= 0; PRAGMA temp_store = MEMORY;"
                                "PRAGMA synchronous = NORMAL; PRAGMA journal_size_limit = 4194304";

/// Of what the system refused; that the store has no place there would look as if a key were missing.
LSTATUS statusOfErrno(LSTATUS otherwise)
{
    const bool hasNoPlace = errno == ENOENT || errno == ENOTDIR;
    return static_cast<LSTATUS>(errorOf(hasNoPlace ? 0 : errno, static_cast<DWORD>(otherwise)));
}

/// For what SQLite answered; the system's own error, which it does not always tell, is still in errno.
LSTATUS statusOf(int code)
{
    constexpr int primary = 0xFF;
    switch (code & primary) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return ERROR_SUCCESS;
    case SQLITE_BUSY:
    case SQLITE_PROTOCOL:
        return ERROR_LOCK_FAILED;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return ERROR_ACCESS_DENIED;
    case SQLITE_FULL:
        return ERROR_DISK_FULL;
    case SQLITE_NOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case SQLITE_TOOBIG:
        return ERROR_INVALID_PARAMETER;
    case SQLITE_CANTOPEN:
        return statusOfErrno(ERROR_CANTOPEN);
    case SQLITE_IOERR:
        return statusOfErrno(ERROR_REGISTRY_IO_FAILED);
    default:
        return ERROR_REGISTRY_CORRUPT;
    }
}

/// Runs work() again while it fails with ERROR_LOCK_FAILED, for a bounded time.
template <typename Work>
LSTATUS retry(Work work)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::microseconds longestPause{5000};
    const Clock::time_point end = Clock::now() + longestWait;
    LSTATUS status = outcome(work);
    for (std::chrono::microseconds pause{50}; status == ERROR_LOCK_FAILED && Clock::now() < end;
         pause = std::min(2 * pause, longestPause)) {
        std::this_thread::sleep_for(pause);
        status = outcome(work);
    }
    return status;
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

/// A write past the process's file size limit is an error, unless the program wants its signal.
void ignoreFileSizeSignal()
{
    struct sigaction wanted = {};
    if (sigaction(SIGXFSZ, nullptr, &wanted) == 0 && wanted.sa_handler == SIG_DFL) {
        wanted.sa_handler = SIG_IGN;
        sigaction(SIGXFSZ, &wanted, nullptr);
    }
}

// ---- The version
//
// The header of the write-ahead log's index, which all processes share in memory and every commit changes. It
// is an interface of SQLite's: https://www.sqlite.org/walformat.html. Where it has another format there is no
// version.

constexpr std::uint32_t indexFormat = 3007000;
constexpr std::size_t sumAt = 5;    // in units of 8 bytes: the header's sum of itself
constexpr std::size_t countAt = 14; // in units of 4 bytes: in the second copy, written before the first
constexpr std::size_t pageSize = 4096;

// Stays where it is while the process lives: a page without content, or the index's first page.
std::atomic<std::uint64_t*> page = nullptr;

// How often a file was opened: two that have no log begin with the same header.
std::atomic<std::uint64_t> turn = 0;

/// A number of the header, 0 where there is none.
template <typename Number>
Number numberAt(std::size_t index)
{
    const auto* const numbers = reinterpret_cast<const Number*>(page.load(std::memory_order_acquire));
    return numbers != nullptr ? __atomic_load_n(numbers + index, __ATOMIC_ACQUIRE) : 0;
}

/// From here on contentVersion tells none.
void hideVersion()
{
    if (page != nullptr) {
        static_cast<void>(mmap(page, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0));
    }
}

/// From here on contentVersion tells that of the open log's index.
void showVersion(int index)
{
    const int place = page != nullptr ? MAP_FIXED : 0;
    void* const shown =
        index >= 0 ? mmap(page, pageSize, PROT_READ, MAP_SHARED | place, index, 0) : MAP_FAILED;
    page = shown != MAP_FAILED ? static_cast<std::uint64_t*>(shown) : page.load();
    if (numberAt<std::uint32_t>(0) != indexFormat) {
        hideVersion();
    }
}

} // namespace

std::uint64_t contentVersion()
{
    const auto sum = numberAt<std::uint64_t>(sumAt);
    return sum != 0 ? sum + turn : 0;
}

// ---- The connection

Database::Database(std::string_view file, const char* schema, void (*fill)())
    : m_fileName(file), m_schema(schema), m_fill(fill)
{
}

Database::Lock Database::read()
{
    Lock lock(m_mutex);
    prepare(false);
    if (!m_isShared) {
        Query(*this, "BEGIN").run();
    }
    return lock;
}

Database::Lock Database::write()
{
    Lock kept;
    check(retry([&] { // without the lock while it waits, so that this process's readers need not
        Lock lock(m_mutex);
        begin();
        kept = std::move(lock);
        return ERROR_SUCCESS;
    }));
    return kept;
}

std::uint64_t Database::commit()
{
    const std::uint32_t before = numberAt<std::uint32_t>(countAt);
    Query(*this, m_isShared ? "RELEASE call" : "COMMIT").run();
    const std::uint64_t version = contentVersion();
    return numberAt<std::uint32_t>(countAt) == before + 1 ? version : 0;
}

void Database::undo(bool wasReading)
{
    if (m_isShared && !wasReading) {
        run("ROLLBACK TO call; RELEASE call");
    } else if (!m_isShared && sqlite3_get_autocommit(m_database) == 0) { // no error of the disk has ended it
        outcome([this] { return Query(*this, "ROLLBACK").run(); });
    }
}

LSTATUS Database::beginShared()
{
    return outcome([this] {
        const Lock lock = write();
        if (m_isShared) {
            undo(false);
            return ERROR_INVALID_PARAMETER;
        }
        m_isShared = true;
        hideVersion();
        return ERROR_SUCCESS;
    });
}

LSTATUS Database::endShared(bool keep)
{
    const Lock lock(m_mutex);
    if (!m_isShared) {
        return ERROR_INVALID_PARAMETER;
    }
    LSTATUS status = ERROR_CANTWRITE;
    if (!isLost()) {
        status = run(keep ? "COMMIT" : "ROLLBACK");
    }
    m_isShared = false;
    if (m_database != nullptr) {
        undo(false); // what could not be committed
        showVersion(m_index);
    }
    return status;
}

Database::Lock Database::close()
{
    Lock lock(m_mutex);
    disconnect();
    return lock;
}

sqlite3_stmt* Database::prepared(const char* sql)
{
    auto& statement = m_statements.try_emplace(sql, nullptr, sqlite3_finalize).first->second;
    if (statement == nullptr) {
        sqlite3_stmt* made = nullptr;
        errno = 0;
        check(statusOf(sqlite3_prepare_v3(m_database, sql, -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr)));
        statement.reset(made);
    }
    return statement.get();
}

Database::Listing Database::listing() const
{
    struct stat found = {}; // all 0 for what is not there
    stat(m_folder.c_str(), &found);
    return {found.st_dev, found.st_ino, found.st_mtim.tv_sec, found.st_mtim.tv_nsec, found.st_uid};
}

/// Makes the connection ready.
void Database::prepare(bool forWriting)
{
    if (m_database != nullptr && (listing() != m_listing || (forWriting && m_whyReadOnly != ERROR_SUCCESS))) {
        disconnect();
    }
    if (m_database == nullptr) {
        check(
            retry([this] { return open(); })); // another may be making the store, or mending it after a crash
    }
    if (forWriting) {
        check(isLost() ? ERROR_CANTWRITE : m_whyReadOnly);
    }
}

/// Does not wait for other writers.
void Database::begin()
{
    prepare(true);
    sqlite3_busy_timeout(m_database, 0);
    const LSTATUS status =
        outcome([this] { return Query(*this, m_isShared ? "SAVEPOINT call" : "BEGIN IMMEDIATE").run(); });
    sqlite3_busy_timeout(m_database, longestWait.count());
    check(status);
}

void Database::disconnect()
{
    hideVersion();
    m_statements.clear();
    sqlite3_close(std::exchange(m_database, nullptr));
    if (m_index >= 0) {
        ::close(std::exchange(m_index, -1));
    }
}

LSTATUS Database::run(const char* sql) const
{
    errno = 0;
    return statusOf(sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr));
}

/// For writing, else for reading.
LSTATUS Database::open()
{
    if (m_file.empty()) {
        m_folder = dataFolder() + "/winhost";
        m_file = m_folder + '/' + m_fileName;
        ignoreFileSizeSignal();
    }
    check(makeFolders(m_folder) ? ERROR_SUCCESS : statusOfErrno(ERROR_CANTOPEN));
    writeInPlace(m_folder);
    m_listing = listing();
    check(std::get<uid_t>(m_listing) == geteuid() ? ERROR_SUCCESS : ERROR_ACCESS_DENIED);
    const int made = ::open(m_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, fileMode);
    m_whyReadOnly = made < 0 ? statusOfErrno(ERROR_CANTOPEN) : ERROR_SUCCESS;
    struct stat file = {};
    const bool isOthers = fstat(made, &file) == 0 && file.st_uid != geteuid();
    char format = 0; // 1 for a database that was never in write-ahead mode: another's, to be left as it is
    static_cast<void>(pread(made, &format, 1, formatAt));
    ::close(made);
    check(isOthers ? ERROR_ACCESS_DENIED : format == 1 ? ERROR_BADDB : ERROR_SUCCESS);
    if (m_whyReadOnly == ERROR_SUCCESS) {
        m_whyReadOnly = connect(true);
    }
    LSTATUS status = m_whyReadOnly;
    if (status == ERROR_ACCESS_DENIED || status == ERROR_DISK_FULL || status == ERROR_CANTOPEN) {
        status = connect(false);
        status = status == ERROR_SUCCESS || status == ERROR_REGISTRY_CORRUPT ? status : m_whyReadOnly;
    }
    if (status == ERROR_SUCCESS && listing() != m_listing) { // perhaps not what is there now
        disconnect();
        return ERROR_LOCK_FAILED;
    }
    return status;
}

/// Closed again where it fails.
LSTATUS Database::connect(bool forWriting)
{
    const LSTATUS status = outcome([&] {
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
        check(statusOf(sqlite3_open_v2(uri.c_str(), &m_database, flags, nullptr)));
        sqlite3_db_config(m_database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        int keepsLog = 1;
        sqlite3_file_control(m_database, "main", SQLITE_FCNTL_PERSIST_WAL, &keepsLog);
        check(forWriting ? openLog() : run(options));
        const LSTATUS found = schemaStatus();
        return found == ERROR_FILE_NOT_FOUND && forWriting ? create() : found;
    });
    if (status != ERROR_SUCCESS) {
        disconnect();
        return status;
    }
    ++turn;
    showVersion(m_index);
    sqlite3_busy_timeout(m_database, longestWait.count());
    return status;
}

/// Before SQLite reads the log it makes the log's index and gives it its room on the disk, for a log of 32
/// MB: it is written to in memory, where a full disk would be a signal and not an error.
LSTATUS Database::openLog()
{
    constexpr int regionSize = 32768;
    sqlite3_file* file = nullptr;
    sqlite3_file_control(m_database, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    m_index = ::open((m_file + "-shm").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, fileMode);
    if (m_index < 0 || file->pMethods->iVersion < 2) { // it cannot share memory
        return statusOfErrno(ERROR_CANTOPEN);
    }
    void volatile* index = nullptr;
    errno = 0;
    LSTATUS status = statusOf(file->pMethods->xShmMap(file, 0, regionSize, 1, &index));
    if (status == ERROR_SUCCESS) {
        errno = posix_fallocate(m_index, 0, off_t{2} * regionSize);
        status = errno == 0 ? ERROR_SUCCESS : statusOfErrno(ERROR_SUCCESS);
    }
    status = status == ERROR_SUCCESS ? run(options) : status;
    status = status == ERROR_SUCCESS ? run("PRAGMA journal_mode = WAL") : status;
    if (status != ERROR_SUCCESS) {
        file->pMethods->xShmUnmap(file, 0); // SQLite would leave it
    }
    return status;
}

/// ERROR_FILE_NOT_FOUND for an empty file, ERROR_BADDB for another's.
LSTATUS Database::schemaStatus()
{
    Query all(*this, "SELECT group_concat(sql, ';') FROM sqlite_schema WHERE sql NOTNULL");
    const std::string_view found = all.next() ? all.bytes(0) : "";
    return found.empty() ? ERROR_FILE_NOT_FOUND : found == m_schema ? ERROR_SUCCESS : ERROR_BADDB;
}

/// In an empty file.
LSTATUS Database::create()
{
    check(run("BEGIN IMMEDIATE"));
    if (schemaStatus() == ERROR_FILE_NOT_FOUND) { // no other process was first
        check(run(m_schema));
        m_fill();
    }
    check(run("COMMIT"));
    return schemaStatus();
}

/// An error of the disk ends a transaction on its own, and a fork does.
bool Database::isLost() const
{
    return m_isShared && (m_database == nullptr || sqlite3_get_autocommit(m_database) != 0);
}

Query::~Query()
{
    sqlite3_reset(m_statement);
}

void Query::bind(std::int64_t number)
{
    check(statusOf(sqlite3_bind_int64(m_statement, ++m_bound, number)));
}

void Query::bind(std::string_view bytes)
{
    const void* const data = bytes.data() != nullptr ? bytes.data() : "";
    check(statusOf(sqlite3_bind_blob64(m_statement, ++m_bound, data, bytes.size(), SQLITE_STATIC)));
}

bool Query::next()
{
    errno = 0;
    const int result = sqlite3_step(m_statement);
    check(statusOf(result));
    return result == SQLITE_ROW;
}

LSTATUS Query::run()
{
    while (next()) {
    }
    return ERROR_SUCCESS;
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

} // namespace winhost::database
