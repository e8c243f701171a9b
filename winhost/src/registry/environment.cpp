#include "registry/environment.h"

#include "registry/records.h"
#include "registry/tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

namespace winhost::registry {

namespace {

constexpr std::size_t mapSize = std::size_t{16} << 30; // address space, not disk
constexpr unsigned maxReaders = 1024;                  // threads of all processes that read
constexpr std::size_t pagesAhead = 256;
constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

struct CloseEnvironment
{
    void operator()(MDB_env* env) const { mdb_env_close(env); }
};
using Environment = std::unique_ptr<MDB_env, CloseEnvironment>;

struct AbortTransaction
{
    void operator()(MDB_txn* txn) const { mdb_txn_abort(txn); }
};
using OwnedTransaction = std::unique_ptr<MDB_txn, AbortTransaction>;

struct Store
{
    MDB_env* env = nullptr;
    MDB_dbi database = 0;
};

std::atomic<const Store*> openedStore = nullptr;
std::mutex openingStore;

/// $XDG_DATA_HOME/winhost, else ~/.local/share/winhost.
bool storeFolder(char (&folder)[PATH_MAX])
{
    const char* base = std::getenv("XDG_DATA_HOME");
    const char* below = "winhost";
    if (base == nullptr || *base != '/') {
        base = std::getenv("HOME");
        below = ".local/share/winhost";
    }
    if (base == nullptr || *base != '/') {
        return false;
    }
    const int length = std::snprintf(folder, sizeof folder, "%s/%s", base, below);
    return length > 0 && static_cast<std::size_t>(length) < sizeof folder;
}

/// Makes the folder and those above it, as far as they are missing.
int makeFolders(char* folder)
{
    if (mkdir(folder, folderMode) == 0 || errno == EEXIST) {
        return 0;
    }
    for (char* at = folder + 1;; ++at) {
        const char end = *at;
        if (end != '/' && end != 0) {
            continue;
        }
        *at = 0;
        const int failed = mkdir(folder, folderMode) == 0 ? 0 : errno;
        struct stat info;
        const bool exists = failed == 0 || stat(folder, &info) == 0;
        *at = end;
        if (!exists) {
            return failed;
        }
        if (end == 0) {
            return 0;
        }
    }
}

int openFile(const char* folder, unsigned flags, Environment& env)
{
    MDB_env* created = nullptr;
    if (const int failed = mdb_env_create(&created)) {
        return failed;
    }
    env.reset(created);
    mdb_env_set_mapsize(created, mapSize);
    mdb_env_set_maxreaders(created, maxReaders);
    return mdb_env_open(created, folder, MDB_NOTLS | MDB_NOMETASYNC | flags, fileMode);
}

bool isForbidden(int code)
{
    return code == EACCES || code == EPERM || code == EROFS;
}

/// Opens for writing; where that is forbidden for reading, if need be without the lock file.
int openFile(const char* folder, Environment& env)
{
    const int failed = openFile(folder, 0, env);
    if (!isForbidden(failed)) {
        return failed;
    }
    for (const unsigned lock : {0U, unsigned{MDB_NOLOCK}}) {
        const int failedToRead = openFile(folder, MDB_RDONLY | lock, env);
        if (!isForbidden(failedToRead)) {
            return failedToRead == ENOENT ? failed : failedToRead;
        }
    }
    return failed;
}

/// How far the file reaches and should reach, in bytes.
int fileSizes(MDB_env* env, mdb_filehandle_t& file, std::size_t& pageSize, std::size_t& used,
              std::size_t& present)
{
    MDB_envinfo info;
    MDB_stat pages;
    struct stat size;
    mdb_env_info(env, &info);
    mdb_env_stat(env, &pages);
    mdb_env_get_fd(env, &file);
    if (fstat(file, &size) != 0) {
        return errno;
    }
    pageSize = pages.ms_psize;
    used = (info.me_last_pgno + 1) * pageSize;
    present = static_cast<std::size_t>(size.st_size);
    return 0;
}

/// A page beyond the file's end cannot be read: that is a signal, not an error.
int checkNotTruncated(MDB_env* env)
{
    mdb_filehandle_t file = -1;
    std::size_t pageSize = 0;
    std::size_t used = 0;
    std::size_t present = 0;
    const int failed = fileSizes(env, file, pageSize, used, present);
    return failed != 0 ? failed : present < used ? MDB_CORRUPTED : 0;
}

/// Keeps the file ahead of its last page: LMDB does not write a page that it takes and frees in one
/// transaction, which would otherwise make a whole file look truncated. False on a full disk, where a write
/// may still find room.
bool growAhead(MDB_env* env)
{
    mdb_filehandle_t file = -1;
    std::size_t pageSize = 0;
    std::size_t used = 0;
    std::size_t present = 0;
    if (fileSizes(env, file, pageSize, used, present) != 0 || present >= used + pagesAhead * pageSize) {
        return true;
    }
    return posix_fallocate(file, static_cast<off_t>(present),
                           static_cast<off_t>(used + 2 * pagesAhead * pageSize - present)) != ENOSPC;
}

/// Opens the database, which stays open with the transaction's commit, and fills an empty one; one that has
/// something else in it is not ours.
LSTATUS openDatabase(MDB_env* env, unsigned flags, MDB_dbi& database)
{
    Transaction in;
    if (const int failed = mdb_txn_begin(env, nullptr, flags, &in.txn)) {
        return statusOf(failed);
    }
    OwnedTransaction owned(in.txn);
    MDB_stat content{};
    int failed = mdb_dbi_open(in.txn, nullptr, 0, &in.database);
    if (failed == 0) {
        failed = mdb_stat(in.txn, in.database, &content);
    }
    LSTATUS status = statusOf(failed);
    if (status == ERROR_SUCCESS && content.ms_entries == 0) {
        if (flags == MDB_RDONLY) {
            return ERROR_FILE_NOT_FOUND;
        }
        growAhead(env);
        status = createRoots(in);
    }
    if (status == ERROR_SUCCESS) {
        status = checkHeader(in);
    }
    database = in.database;
    return status != ERROR_SUCCESS ? status : statusOf(mdb_txn_commit(owned.release()));
}

LSTATUS openStore(const Store*& store)
{
    store = openedStore.load(std::memory_order_acquire);
    if (store != nullptr) {
        return ERROR_SUCCESS;
    }
    const std::lock_guard<std::mutex> lock(openingStore);
    store = openedStore.load(std::memory_order_acquire);
    if (store != nullptr) {
        return ERROR_SUCCESS;
    }
    static Store opening;
    char folder[PATH_MAX];
    if (!storeFolder(folder)) {
        return ERROR_CANTOPEN;
    }
    if (const int failed = makeFolders(folder)) {
        return statusOf(failed);
    }
    Environment env;
    int failed = openFile(folder, env);
    if (failed == 0) {
        failed = checkNotTruncated(env.get());
    }
    if (failed != 0) {
        return statusOf(failed);
    }
    mdb_reader_check(env.get(), nullptr);
    LSTATUS status = openDatabase(env.get(), MDB_RDONLY, opening.database);
    if (status == ERROR_FILE_NOT_FOUND) {
        status = openDatabase(env.get(), 0, opening.database);
    }
    if (status != ERROR_SUCCESS) {
        return status;
    }
    opening.env = env.release();
    store = &opening;
    openedStore.store(store, std::memory_order_release);
    return ERROR_SUCCESS;
}

/// The thread's reader, reset between its uses.
OwnedTransaction& threadReader()
{
    thread_local OwnedTransaction reader;
    return reader;
}

int beginRead(MDB_env* env, OwnedTransaction& reader)
{
    if (reader != nullptr) {
        return mdb_txn_renew(reader.get());
    }
    MDB_txn* txn = nullptr;
    int failed = mdb_txn_begin(env, nullptr, MDB_RDONLY, &txn);
    if (failed == MDB_READERS_FULL) {
        mdb_reader_check(env, nullptr);
        failed = mdb_txn_begin(env, nullptr, MDB_RDONLY, &txn);
    }
    reader.reset(txn);
    return failed;
}

} // namespace

LSTATUS statusOf(int code)
{
    switch (code) {
    case 0:
        return ERROR_SUCCESS;
    case MDB_NOTFOUND:
        return ERROR_FILE_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EROFS:
        return ERROR_ACCESS_DENIED;
    case MDB_MAP_FULL:
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ERROR_DISK_FULL;
    case ENOMEM:
    case MDB_TXN_FULL:
        return ERROR_NOT_ENOUGH_MEMORY;
    case MDB_READERS_FULL:
    case EMFILE:
    case ENFILE:
        return ERROR_NO_SYSTEM_RESOURCES;
    case MDB_INVALID:
    case MDB_CORRUPTED:
    case MDB_PAGE_NOTFOUND:
        return ERROR_REGISTRY_CORRUPT;
    case MDB_VERSION_MISMATCH:
    case MDB_INCOMPATIBLE:
        return ERROR_BADDB;
    case MDB_BAD_VALSIZE:
    case EINVAL:
        return ERROR_INVALID_PARAMETER;
    case ENOENT:
    case ENOTDIR:
    case EISDIR:
    case ELOOP:
    case ENAMETOOLONG:
        return ERROR_CANTOPEN;
    default:
        return ERROR_REGISTRY_IO_FAILED;
    }
}

ReadTransaction::ReadTransaction()
{
    const Store* store = nullptr;
    m_status = openStore(store);
    if (m_status == ERROR_SUCCESS) {
        OwnedTransaction& reader = threadReader();
        m_status = statusOf(beginRead(store->env, reader));
        m_transaction = {m_status == ERROR_SUCCESS ? reader.get() : nullptr, store->database};
    }
}

ReadTransaction::~ReadTransaction()
{
    if (m_transaction.txn != nullptr) {
        mdb_txn_reset(m_transaction.txn);
    }
}

WriteTransaction::WriteTransaction()
{
    const Store* store = nullptr;
    m_status = openStore(store);
    if (m_status == ERROR_SUCCESS) {
        m_transaction.database = store->database;
        m_status = statusOf(mdb_txn_begin(store->env, nullptr, 0, &m_transaction.txn));
    }
    if (m_transaction.txn != nullptr) {
        m_hasRoom = growAhead(store->env);
    }
}

WriteTransaction::~WriteTransaction()
{
    if (m_transaction.txn != nullptr) {
        mdb_txn_abort(m_transaction.txn);
    }
}

LSTATUS WriteTransaction::commit()
{
    const int failed = mdb_txn_commit(std::exchange(m_transaction.txn, nullptr));
    return statusOf(failed == EIO && !m_hasRoom ? ENOSPC : failed); // a write that was cut short
}

} // namespace winhost::registry
