#include "database/database.h"

#include "database/wait.h"
#include "last_error.h"
#include "user_folders.h"

#include <winhost/changes.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace winhost::database {

namespace {

enum Kind
{
    eWritable,
    eReadOnly,
    eUnlocked, // read-only and without a log: SQLite neither locks the file nor notices changes
    eNew       // in memory, with the content of a new file
};

/// Changes when the path leads to another file or folder, when a file is created in the folder or deleted
/// from it, and when the folder's owner changes. All members are 0 if the files are not at the path.
using Listing = std::tuple<dev_t, ino_t, time_t, long, dev_t, ino_t>;

struct Connection
{
    std::mutex mutex;   // protects all other members
    std::string path;   // the store's file below the user's data folder
    std::string file;   // path with links resolved
    std::string folder; // the folder that contains `file`
    sqlite3* database = nullptr;
    std::unordered_map<const char*, std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>> statements;
    Kind kind = eNew;
    LSTATUS whyReadOnly = ERROR_SUCCESS; // the error from opening the file for writing
    std::uint32_t state = 0;             // the database file's last accepted state, as a number
    std::uint32_t frames = 0;            // how many frames the log contained after the last commit
    std::uint32_t attempt = 0;           // how many it contained after the last call to writeBack()
    std::uint64_t version = 0;           // the content's version after the last check or commit; 0 if unknown
    bool isShared = false;
    bool isLeaving = false; // the process is exiting, so each call closes the store
    Listing listing{};
};
Connection& own = *new Connection; // never destroyed, because it may be used while the process exits

// The connection's mutex replaces SQLite's.
const int isConfigured = sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);

/// Converts errno. Returns `fallback` for ENOENT and ENOTDIR, because their Windows codes would report a
/// missing key.
LSTATUS statusOfErrno(LSTATUS fallback)
{
    const bool hasNoPlace = errno == ENOENT || errno == ENOTDIR;
    return static_cast<LSTATUS>(errorOf(hasNoPlace ? 0 : errno, static_cast<DWORD>(fallback)));
}

/// Converts an SQLite result code. Uses errno for SQLITE_CANTOPEN and SQLITE_IOERR, which do not identify the
/// cause.
LSTATUS statusOf(int code)
{
    constexpr std::pair<int, LSTATUS> statuses[] = {{SQLITE_OK, ERROR_SUCCESS},
                                                    {SQLITE_ROW, ERROR_SUCCESS},
                                                    {SQLITE_DONE, ERROR_SUCCESS},
                                                    {SQLITE_BUSY, ERROR_LOCK_FAILED},
                                                    {SQLITE_PROTOCOL, ERROR_LOCK_FAILED},
                                                    {SQLITE_READONLY, ERROR_ACCESS_DENIED},
                                                    {SQLITE_PERM, ERROR_ACCESS_DENIED},
                                                    {SQLITE_FULL, ERROR_DISK_FULL},
                                                    {SQLITE_NOMEM, ERROR_NOT_ENOUGH_MEMORY},
                                                    {SQLITE_TOOBIG, ERROR_INVALID_PARAMETER},
                                                    {SQLITE_CANTOPEN, ERROR_CANTOPEN},
                                                    {SQLITE_IOERR, ERROR_REGISTRY_IO_FAILED}};
    const auto* const found = std::ranges::find(statuses, code, &std::pair<int, LSTATUS>::first);
    const LSTATUS status = found != std::end(statuses) ? found->second : ERROR_REGISTRY_CORRUPT;
    if (status == ERROR_CANTOPEN && errno == EWOULDBLOCK) { // another process has a lease on the file
        return ERROR_LOCK_FAILED;
    }
    return status == ERROR_CANTOPEN || status == ERROR_REGISTRY_IO_FAILED ? statusOfErrno(status) : status;
}

/// Does not throw, because destructors call it.
LSTATUS run(const char* sql)
{
    errno = 0;
    return statusOf(sqlite3_exec(own.database, sql, nullptr, nullptr, nullptr));
}

// ---- Waiting

/// Repeats work() while it fails with ERROR_LOCK_FAILED, until the time limit has passed.
template <typename Work>
LSTATUS retry(Work work)
{
    constexpr std::chrono::microseconds longestPause{5000};
    LSTATUS status = outcome(work);
    for (std::chrono::microseconds pause{50}; status == ERROR_LOCK_FAILED && wait(pause);
         pause = std::min(2 * pause, longestPause)) {
        status = outcome(work);
    }
    return status;
}

/// SQLite calls this function when a lock is held, and tries again if the result is 1.
int waitForLock(void*, int)
{
    return wait(std::chrono::milliseconds{1}) ? 1 : 0;
}

/// A file that is closed at the end of its scope. If it cannot be opened, errno contains the cause.
struct OwnedFile
{
    explicit OwnedFile(const std::string& file, int flags = O_RDONLY)
        : number(::open(file.c_str(), flags | O_CLOEXEC, S_IRUSR | S_IWUSR))
    {
    }
    ~OwnedFile() { ::close(number); }
    OwnedFile(const OwnedFile&) = delete; // the constant member prevents assignment

    const int number;
};

/// Runs work() unless another process is running this function for the same folder; in that case returns
/// ERROR_LOCK_FAILED.
template <typename Work>
LSTATUS alone(const std::string& folder, Work work)
{
    const OwnedFile opened(folder);
    const bool isBusy = flock(opened.number, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    return isBusy ? ERROR_LOCK_FAILED : outcome(work);
}

// ---- The version
//
// The version is read from the header of the write-ahead log's index. All processes share the header in
// memory, and every commit changes it. SQLite documents the header's format:
// https://www.sqlite.org/walformat.html. If the header is in another format, the version is 0.

constexpr std::uint32_t indexFormat = 3007000;
// The position of each number in the index, in multiples of the number's size:
constexpr std::size_t saltsAt = 4;    // the log's salts (64 bits)
constexpr std::size_t sumAt = 5;      // the header's checksum (64 bits)
constexpr std::size_t framesAt = 4;   // how many frames the log contains (32 bits)
constexpr std::size_t countAt = 14;   // the change counter in the second copy of the header (32 bits)
constexpr std::size_t writtenAt = 24; // how many frames have been copied to the file (32 bits)
constexpr std::size_t pageSize = 4096;

constexpr std::uint64_t noIndex[writtenAt] = {};
std::atomic<const std::uint64_t*> page = noIndex; // points to noIndex while the version is unknown

// The address at which the index is mapped, followed by a page of the store's file. While no store is open,
// there are two pages of zeros. This address is never unmapped, because readers do not take a lock. The
// mapping of the file keeps the lock on the file after the program has closed the descriptors; without the
// lock, other programs would remove the index.
void* const place = mmap(nullptr, 2 * pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
void* const filePlace = static_cast<char*>(place) + pageSize;

// The number of files opened so far. contentVersion() adds it to the checksum of the index's header, because
// all indexes of empty logs have the same checksum.
std::atomic<std::uint64_t> turn = 0;

/// Returns a number from the header, or 0 if there is no header.
template <typename Number>
Number numberAt(std::size_t index)
{
    return __atomic_load_n(reinterpret_cast<const Number*>(page.load()) + index, __ATOMIC_ACQUIRE);
}

/// Makes contentVersion return 0. The index stays locked while it is mapped, and no process can reset a
/// locked index.
void unmapVersion()
{
    page = noIndex;
    constexpr int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED;
    static_cast<void>(mmap(place, 2 * pageSize, PROT_READ, flags, -1, 0));
}

/// Makes contentVersion read the index of the open log, unless SQLite could not allocate the index.
void showVersion()
{
    if (page != noIndex) {
        return;
    }
    struct stat index = {};
    fstat(descriptor(eIndex), &index);
    const bool isMapped =
        mmap(filePlace, pageSize, PROT_NONE, MAP_SHARED | MAP_FIXED, descriptor(eContent), 0) != MAP_FAILED &&
        index.st_size >= off_t{pageSize} &&
        mmap(place, pageSize, PROT_READ, MAP_SHARED | MAP_FIXED, descriptor(eIndex), 0) != MAP_FAILED;
    if (isMapped && *static_cast<std::uint32_t*>(place) == indexFormat) {
        page = static_cast<std::uint64_t*>(place);
    }
}

// ---- The log
//
// A log contains changes to one state of the file. It may be applied only to that state, or to a state that
// the file passes through while the log is being written back. Therefore each state of the file has a number,
// its generation, which is stored in SQLite's user_version. The generations of one log differ only in the
// lowest 12 bits, which count how many times the log has been written back. A log also stores, as SQLite's
// application_id, Header::state() of the file to which it may be applied.

/// Returns true if the index describes a log that was removed but that other processes still use.
bool isLogReplaced()
{
    constexpr off_t inLog = 16;
    std::uint64_t salts = 0;
    return numberAt<std::uint32_t>(framesAt) != 0 &&
           (pread(descriptor(eLog), &salts, sizeof salts, inLog) != sizeof salts ||
            salts != numberAt<std::uint64_t>(saltsAt));
}

constexpr std::uint32_t mostWrites = 0xFFF; // the bits of the count

/// Part of the database file's header.
struct Header
{
    std::uint32_t schema; // the version of the schema
    std::uint32_t generation;

    /// Identifies the file's state: VACUUM changes the version of the schema, but not the generation.
    std::uint32_t state() const { return generation ^ (schema * 0x9E3779B1); }
};

Header headerOfFile()
{
    constexpr off_t inFile = 40;
    std::uint32_t numbers[6] = {};
    static_cast<void>(pread(descriptor(eContent), numbers, sizeof numbers, inFile));
    return {__builtin_bswap32(numbers[0]), __builtin_bswap32(numbers[5])};
}

std::uint32_t storedNumber(const char* pragma)
{
    Query query(pragma);
    require(query.next());
    return static_cast<std::uint32_t>(query.number(0));
}

/// Returns ERROR_REGISTRY_CORRUPT if the log belongs to another file or the file is newer than the log, and
/// ERROR_LOCK_FAILED while other processes use a log that was removed.
LSTATUS logStatus()
{
    const std::uint64_t version = contentVersion();
    const Header file = headerOfFile();
    if (version != 0 && version == own.version && file.state() == own.state) {
        return ERROR_SUCCESS; // unchanged since the last check or commit
    }
    if (isLogReplaced()) {
        return ERROR_LOCK_FAILED;
    }
    const std::uint32_t last = storedNumber("PRAGMA user_version");
    const bool isInLog = (file.generation ^ last) <= mostWrites && file.generation <= last &&
                         file.schema <= storedNumber("PRAGMA schema_version");
    if (isInLog || file.state() == storedNumber("PRAGMA application_id")) {
        own.state = file.state();
        own.version = version;
        return ERROR_SUCCESS;
    }
    return version != 0 && version == contentVersion() ? ERROR_REGISTRY_CORRUPT : ERROR_LOCK_FAILED;
}

LSTATUS storeNumber(const char* pragma, std::uint32_t number)
{
    return run((pragma + ('=' + std::to_string(static_cast<std::int32_t>(number)))).c_str());
}

/// Stores the state of the file to which a new log may be applied, and the first generation of the log.
void numberLog(std::uint32_t state)
{
    check(storeNumber("PRAGMA application_id", state));
    check(storeNumber("PRAGMA user_version", std::random_device()() & ~mostWrites));
}

bool isWrittenBack()
{
    return page != noIndex && numberAt<std::uint32_t>(framesAt) == numberAt<std::uint32_t>(writtenAt);
}

/// Writes the log back to the file. Changes the generation first, so that the resulting file has a generation
/// that no earlier copy has. If the change fails, for example because the disk is full, still writes the log
/// back. Does not wait for other writers.
LSTATUS writeBack(int mode)
{
    sqlite3_busy_handler(own.database, nullptr, nullptr);
    const LSTATUS status = outcome([] {
        Query("BEGIN IMMEDIATE").run();
        const std::uint32_t last = storedNumber("PRAGMA user_version");
        if (!isWrittenBack() && (last & mostWrites) != mostWrites) {
            check(storeNumber("PRAGMA user_version", last + 1));
        }
        Query("COMMIT").run();
        return ERROR_SUCCESS;
    });
    sqlite3_busy_handler(own.database, waitForLock, nullptr);
    if (sqlite3_get_autocommit(own.database) == 0) {
        run("ROLLBACK");
    }
    own.attempt = own.frames;
    errno = 0;
    return status == ERROR_LOCK_FAILED
               ? status // the other writer writes the log back
               : statusOf(sqlite3_wal_checkpoint_v2(own.database, nullptr, mode, nullptr, nullptr));
}

/// SQLite calls this function after each commit.
int countFrames(void*, sqlite3*, const char*, int frames)
{
    own.frames = static_cast<std::uint32_t>(frames);
    return SQLITE_OK;
}

/// Returns true if another process has locked one of these bytes. SQLite documents their meaning.
bool isLocked(File which, off_t first, off_t count)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_start = first;
    lock.l_len = count;
    return fcntl(descriptor(which), F_OFD_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
}

bool isOnlyUser()
{
    return !isLocked(eContent, 0x40000002, 510); // SQLite's shared lock
}

bool isLogRead()
{
    return isLocked(eIndex, 124, 4); // SQLite's read locks on the log
}

/// Writes the log back if it is long. If other processes prevent this, tries again when the log has grown.
void shortenLog()
{
    constexpr std::uint32_t longest = 1000;
    if (!own.isShared && own.frames >= longest && own.frames - own.attempt >= (isLogRead() ? 100 : 10)) {
        writeBack(SQLITE_CHECKPOINT_PASSIVE);
    }
}

/// Stores a new generation number if the next write starts a new log. Call this in a write transaction.
void beginLog()
{
    check(logStatus());
    showVersion(); // a mapping that failed before may succeed now
    if (isWrittenBack()) {
        own.state = headerOfFile().state(); // other processes cannot change it during the transaction
        numberLog(own.state);
    }
}

// ---- Files

/// Returns the path with links resolved, so that SQLite creates the log and its index next to the file
/// itself. Returns `otherwise` if the file does not exist.
std::string resolved(const std::string& file, const std::string& otherwise)
{
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(file.c_str(), nullptr), &std::free);
    return path != nullptr ? path.get() : otherwise;
}

/// Returns the status of a file. On failure all members are 0 and errno contains the cause.
struct stat statusOfFile(const std::string& file)
{
    struct stat found = {};
    errno = 0;
    stat(file.c_str(), &found);
    return found;
}

Listing listing()
{
    const struct stat folder = statusOfFile(own.folder);
    const struct stat file = statusOfFile(own.path); // the folder's timestamp may change only every few ms
    return {folder.st_dev,          folder.st_ino, folder.st_ctim.tv_sec,
            folder.st_ctim.tv_nsec, file.st_dev,   file.st_ino};
}

/// Returns true if the file at the path is the one that SQLite has opened, or if neither file exists. A link
/// to the open file counts as another file: SQLite would create the log next to the link's target, not next
/// to the link.
bool isAtPlace(const std::string& file, File which)
{
    struct stat found = {};
    struct stat opened = {};
    lstat((file + suffixes[which]).c_str(), &found);
    fstat(descriptor(which), &opened);
    return opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

/// Returns true if the path no longer leads to the open files.
bool isMoved()
{
    const Listing now = listing();
    if (now != own.listing) { // creating or deleting a file in the folder also changes the listing
        const bool isAt = isAtPlace(own.file, eContent) && isAtPlace(own.file, eLog) &&
                          isAtPlace(own.file, eIndex) &&
                          (own.file == own.path || resolved(own.path, own.path) == own.file);
        own.listing = isAt ? now : Listing();
    }
    return own.listing == Listing();
}

/// Switches off copy-on-write on btrfs. With copy-on-write, each change to a mapped page needs new space, and
/// if the disk is full, the change raises SIGBUS.
void writeInPlace(const std::string& folder)
{
    const OwnedFile opened(folder);
    int flags = 0;
    if (ioctl(opened.number, FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_NOCOW_FL) == 0) {
        flags |= FS_NOCOW_FL;
        ioctl(opened.number, FS_IOC_SETFLAGS, &flags); // inherited by files that are created in the folder
    }
}

LSTATUS createFile()
{
    const std::string folder = own.path.substr(0, own.path.rfind('/'));
    check(makeFolders(folder) ? ERROR_SUCCESS : statusOfErrno(ERROR_CANTOPEN));
    if (statusOfFile(own.path).st_ino != 0) {
        return ERROR_SUCCESS;
    }
    char target = 0;
    require(readlink(own.path.c_str(), &target, 1) < 0, ERROR_CANTOPEN); // the target of the link is missing
    require(statusOfFile(folder).st_uid == geteuid(), ERROR_ACCESS_DENIED);
    writeInPlace(folder);
    return alone(folder, [&] {
        if (statusOfFile(own.path).st_ino == 0) { // another process may have created it
            unlink((own.path + suffixes[eLog]).c_str());
            unlink((own.path + suffixes[eIndex]).c_str());
        }
        const OwnedFile created(own.path, O_RDWR | O_CREAT);
        // The umask may have removed the user's permissions.
        const bool isMade = created.number >= 0 && fchmod(created.number, S_IRUSR | S_IWUSR) == 0;
        return isMade ? ERROR_SUCCESS : statusOfErrno(ERROR_CANTOPEN);
    });
}

// ---- The connection

void disconnect()
{
    unmapVersion();
    own.statements.clear();
    closeDatabase(std::exchange(own.database, nullptr));
}

/// Returns ERROR_FILE_NOT_FOUND for an empty file, and ERROR_BADDB for a file whose schema is not the
/// store's.
LSTATUS schemaStatus()
{
    Query all("SELECT group_concat(sql, ';') FROM sqlite_schema WHERE name NOT GLOB 'sqlite_*'");
    const std::string_view found = all.next() ? all.bytes(0) : "";
    return found.empty() ? ERROR_FILE_NOT_FOUND : found == content.schema ? ERROR_SUCCESS : ERROR_BADDB;
}

/// Creates the tables in an empty file.
LSTATUS createTables()
{
    check(run("BEGIN IMMEDIATE"));
    if (schemaStatus() == ERROR_FILE_NOT_FOUND) { // another process may have created the tables
        check(run(content.schema));
        content.fill();
        numberLog(0); // the state of an empty file
    }
    check(run("COMMIT"));
    return schemaStatus();
}

/// Returns a URI for SQLite with every character of the file's name percent-encoded.
std::string uriOf(const std::string& file, const char* mode)
{
    std::string uri = "file:";
    for (const char each : file) {
        char coded[sizeof "%FF"];
        std::snprintf(coded, sizeof coded, "%%%02X", static_cast<unsigned char>(each));
        uri += coded;
    }
    return uri + "?mode=" + mode;
}

/// Opens the database, and closes it again on failure. Returns ERROR_FILE_NOT_FOUND if the
/// database has no tables and createsTables is false.
LSTATUS connect(Kind kind, bool createsTables)
{
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI;
    const auto isAbsent = [](const char* suffix) { return statusOfFile(own.file + suffix).st_ino == 0; };
    if (kind == eReadOnly && isAbsent(suffixes[eLog]) && isAbsent(suffixes[eIndex]) && isAbsent("-journal")) {
        kind = eUnlocked;
    }
    const std::string uri = kind == eNew        ? ":memory:"
                            : kind == eWritable ? uriOf(own.file, "rw")
                            : kind == eUnlocked ? uriOf(own.file, "ro&immutable=1")
                                                : uriOf(own.file, "ro&readonly_shm=1");
    const Listing before = kind == eUnlocked ? listing() : Listing();
    const LSTATUS status = outcome([&] {
        own.kind = kind;
        errno = 0;
        check(statusOf(sqlite3_open_v2(uri.c_str(), &own.database, flags, nullptr)));
        // A file that others use without a log next to it was moved, or its log was removed. A second log
        // would damage the file.
        require(kind == eNew || isOnlyUser() || !isAbsent(suffixes[eLog]), ERROR_LOCK_FAILED);
        sqlite3_db_config(own.database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        const LSTATUS found = outcome(schemaStatus);
        if (kind == eWritable) {
            require(sqlite3_db_readonly(own.database, "main") == 0, ERROR_ACCESS_DENIED);
            showVersion();
            require(!isLogReplaced(), ERROR_LOCK_FAILED); // other processes still use the removed log
        }
        const bool isNew = found == ERROR_FILE_NOT_FOUND && createsTables;
        check(isNew ? ERROR_SUCCESS : found);
        check(run("PRAGMA cell_size_check = ON; PRAGMA trusted_schema = OFF; PRAGMA mmap_size = 0;"
                  "PRAGMA temp_store = MEMORY; PRAGMA synchronous = NORMAL;"
                  "PRAGMA journal_size_limit = 4194304"));
        if (kind == eWritable) {
            Query mode("PRAGMA journal_mode = WAL");
            require(mode.next() && mode.bytes(0) == "wal", ERROR_CANTOPEN); // WAL mode needs shared memory
        }
        check(isNew ? createTables() : ERROR_SUCCESS);
        if (kind == eWritable) {
            showVersion();
            ++turn;
        }
        if (kind != eNew) {
            check(logStatus());
            own.listing = {};
            require(!isMoved() && (kind != eUnlocked || own.listing == before), ERROR_LOCK_FAILED);
        }
        sqlite3_busy_handler(own.database, waitForLock, nullptr);
        sqlite3_wal_hook(own.database, countFrames, nullptr);
        return ERROR_SUCCESS;
    });
    if (status != ERROR_SUCCESS) {
        disconnect();
    }
    return status;
}

/// Opens the store, for writing if possible. Creates a missing store only if forWriting is true.
LSTATUS open(bool forWriting)
{
    recordFiles(own.file);
    if (own.path.empty()) {
        own.path = dataFolder() + "/winhost/" + content.file;
    }
    check(forWriting ? createFile() : ERROR_SUCCESS);
    own.whyReadOnly = ERROR_SUCCESS;
    own.file = resolved(own.path, own.path);
    own.folder = own.file.substr(0, own.file.rfind('/'));
    const struct stat file = statusOfFile(own.file);
    if (file.st_size == 0 && !forWriting && (errno == 0 || errno == ENOENT)) {
        return connect(eNew, true);
    }
    require(file.st_ino != 0, statusOfErrno(ERROR_CANTOPEN));
    require(file.st_uid == geteuid() && file.st_uid == statusOfFile(own.folder).st_uid, ERROR_ACCESS_DENIED);
    LSTATUS status = connect(eWritable, forWriting);
    if (status == ERROR_ACCESS_DENIED || status == ERROR_DISK_FULL || status == ERROR_CANTOPEN) {
        own.whyReadOnly = std::exchange(status, connect(eReadOnly, false));
        const bool isFinal =
            status == ERROR_SUCCESS || status == ERROR_REGISTRY_CORRUPT || status == ERROR_LOCK_FAILED;
        status = isFinal ? status : own.whyReadOnly;
    }
    return status == ERROR_FILE_NOT_FOUND ? connect(eNew, true) : status;
}

/// Rolls back a shared transaction. Writes the log back, unless the log is still next to the open file, the
/// file was deleted, or the log does not belong to the file.
LSTATUS saveLog()
{
    if (own.isShared) {
        run("ROLLBACK");
        showVersion();
    }
    struct stat opened = {};
    fstat(descriptor(eContent), &opened);
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor(eContent));
    const std::string file = resolved(link, own.file);
    const bool isKept = opened.st_nlink == 0 || (statusOfFile(file).st_ino != 0 && isAtPlace(file, eLog));
    if (isKept) {
        return ERROR_SUCCESS;
    }
    const LSTATUS status = logStatus();
    check(status == ERROR_SUCCESS ? writeBack(SQLITE_CHECKPOINT_TRUNCATE) : ERROR_SUCCESS);
    if (status != ERROR_LOCK_FAILED && isAtPlace(file, eContent) && !isOnlyUser()) {
        // An empty log lets processes open the file: the others' log has no changes that belong to it.
        const OwnedFile empty(file + suffixes[eLog], O_RDWR | O_CREAT);
    }
    return ERROR_SUCCESS;
}

bool isStale(bool forWriting)
{
    return own.kind == eNew ? forWriting || statusOfFile(own.path).st_size != 0
           : forWriting     ? own.listing == Listing() || own.whyReadOnly != ERROR_SUCCESS // see begin()
                            : (own.kind == eUnlocked && own.listing != listing()) || isMoved();
}

/// Opens the database, unless a usable connection exists. Throws if opening fails, or if forWriting is
/// true and the database cannot be written.
void prepare(bool forWriting)
{
    if (areFilesLost()) {
        disconnect();
    }
    if (own.database == nullptr || isStale(forWriting)) {
        check(retry([&] { // another process may be creating the store, or recovering it after a crash
            if (own.database != nullptr) {
                check(own.kind == eWritable ? alone(own.folder, saveLog) : ERROR_SUCCESS);
                disconnect();
            }
            return open(forWriting);
        }));
    }
    if (forWriting) { // a disk error, a fork or moving the file undoes a shared transaction
        const bool isLost = own.isShared && sqlite3_get_autocommit(own.database) != 0;
        check(isLost ? ERROR_CANTWRITE : own.whyReadOnly);
    }
}

/// Undoes a transaction, unless a disk error has already undone it.
void undo(bool isWriting)
{
    if (own.isShared && isWriting) {
        if (run("ROLLBACK TO call; RELEASE call") != ERROR_SUCCESS) {
            disconnect(); // undoes the whole transaction
        }
    } else if (!own.isShared) {
        outcome([] { return Query("ROLLBACK").run(), ERROR_SUCCESS; });
        if (sqlite3_get_autocommit(own.database) == 0) { // there was not enough memory
            disconnect();
        }
    }
}

/// Closes the store; the last process writes the log back. Returns ERROR_LOCK_FAILED if the call should be
/// repeated, because another process is closing or opening the store.
LSTATUS close()
{
    if (own.database == nullptr || own.kind != eWritable || areFilesLost()) {
        return ERROR_SUCCESS;
    }
    return alone(own.folder, [] {
        const bool isWhole = !own.isShared && !isMoved() && logStatus() == ERROR_SUCCESS;
        check(isWhole ? ERROR_SUCCESS : saveLog());
        if (isWhole && !isWrittenBack() && isOnlyUser()) {
            writeBack(SQLITE_CHECKPOINT_PASSIVE);
        }
        sqlite3_db_config(own.database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, isWhole ? 0 : 1, nullptr);
        return disconnect(), ERROR_SUCCESS;
    });
}

/// Begins a write transaction, without waiting for other writers.
void begin()
{
    prepare(true);
    sqlite3_busy_handler(own.database, nullptr, nullptr);
    const LSTATUS status = outcome([] {
        Query(own.isShared ? "SAVEPOINT call" : "BEGIN IMMEDIATE").run();
        // isMoved() is called within the transaction, because another process may replace the log before the
        // transaction begins.
        require(!isMoved(), ERROR_LOCK_FAILED);
        if (!own.isShared) {
            beginLog();
        }
        return ERROR_SUCCESS;
    });
    sqlite3_busy_handler(own.database, waitForLock, nullptr);
    if (status != ERROR_SUCCESS) {
        undo(true);
        throw Failure{status};
    }
}

} // namespace

std::uint64_t contentVersion()
{
    const auto sum = numberAt<std::uint64_t>(sumAt);
    return sum != 0 ? sum + turn : 0;
}

Transaction::Transaction(bool isWriting) : m_isWriting(isWriting)
{
    startWait();
    if (isWriting) {
        check(retry([this] { // waits without the lock, so that readers in this process can continue
            Lock lock(own.mutex);
            begin();
            m_lock = std::move(lock);
            return ERROR_SUCCESS;
        }));
        allowWaits();
    } else {
        m_lock = Lock(own.mutex);
        prepare(false);
        if (!own.isShared) {
            Query("BEGIN").run();
        }
    }
}

Transaction::~Transaction()
{
    if (!m_isOver) {
        undo(m_isWriting);
    }
    if (own.isLeaving && !own.isShared) {
        close(); // the process is exiting, but this thread is still running
    }
}

std::uint64_t Transaction::version() const
{
    const std::uint64_t version = contentVersion();
    if (!m_isWriting) {
        storedNumber("PRAGMA user_version"); // SQLite chooses the version at the first read
    }
    return version == contentVersion() ? version : 0;
}

std::uint64_t Transaction::commit()
{
    const auto before = numberAt<std::uint32_t>(countAt);
    Query(own.isShared ? "RELEASE call" : "COMMIT").run();
    m_isOver = true;
    const std::uint64_t version = contentVersion();
    own.version = numberAt<std::uint32_t>(countAt) == before + 1 ? version : 0;
    shortenLog();
    return own.version;
}

void Transaction::share()
{
    require(!own.isShared, ERROR_INVALID_PARAMETER);
    own.isShared = true;
    m_isOver = true;
    page = noIndex;
}

Lock hold()
{
    Lock lock(own.mutex);
    if (own.isShared) {
        areFilesLost(); // a child that was created by _Fork must not undo its parent's transaction
        disconnect();
    }
    return lock;
}

void forsake()
{
    own.isShared = false;
    unmapVersion();
    leaveFiles();
}

// Runs after the destructors of all static objects.
__attribute__((destructor)) void leave()
{
    allowWaits();
    startWait();
    retry([]() -> LSTATUS { // another thread may be in a call, and another process may be exiting too
        const Lock lock(own.mutex, std::try_to_lock);
        require(lock.owns_lock(), ERROR_LOCK_FAILED);
        own.isLeaving = true;
        return close();
    });
}

bool Query::next()
{
    errno = 0;
    const int result = sqlite3_step(m_statement);
    check(statusOf(result));
    return result == SQLITE_ROW;
}

std::string_view Query::bytes(int column) const
{
    const auto* const data = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    return {data, data != nullptr ? static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)) : 0};
}

sqlite3_stmt* Query::prepared(const char* sql)
{
    auto& statement = own.statements.try_emplace(sql, nullptr, sqlite3_finalize).first->second;
    if (statement == nullptr) {
        sqlite3_stmt* made = nullptr;
        errno = 0;
        check(statusOf(sqlite3_prepare_v3(own.database, sql, -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr)));
        statement.reset(made);
    }
    return statement.get();
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

} // namespace winhost::database

using namespace winhost::database;

LSTATUS winhostBeginRegistryChanges()
{
    return outcome([] {
        Transaction(true).share();
        return ERROR_SUCCESS;
    });
}

LSTATUS winhostEndRegistryChanges(BOOL keep)
{
    const Lock lock(own.mutex);
    if (!own.isShared) {
        return ERROR_INVALID_PARAMETER;
    }
    startWait();
    const LSTATUS status = outcome([&] {
        isMoved(); // records the result: if the store was moved, prepare() reopens it
        prepare(true);
        return run(keep != FALSE ? "COMMIT" : "ROLLBACK");
    });
    own.isShared = false;
    if (own.database != nullptr) {
        undo(true); // undoes the transaction if the commit failed
        showVersion();
        shortenLog();
    }
    return status;
}
