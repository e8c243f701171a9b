// An SQLite database that all processes of a user share: opened at the first call, and again when the path
// leads to another file. Knows nothing of what is in it. There is one connection, which a call has to itself
// while it works; a process has one database.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>

struct sqlite3;
struct sqlite3_stmt;

namespace winhost::database {

/// Thrown: what a call is to answer that cannot go on.
struct Failure
{
    LSTATUS status;
};

inline void check(LSTATUS status)
{
    if (status != ERROR_SUCCESS) {
        throw Failure{status};
    }
}

/// What work() answers or fails with.
template <typename Work>
LSTATUS outcome(Work work)
{
    try {
        return work();
    } catch (const Failure& failure) {
        return failure.status;
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

/// Tells the content: it is the same as long as nobody has written, in this process or another. 0 where that
/// cannot be told. Takes no lock and no system call.
std::uint64_t contentVersion();

class Database
{
public:
    using Lock = std::unique_lock<std::mutex>;

    /// Below the user's data folder. An empty file gets the tables, and what fill() has to put there.
    Database(std::string_view file, const char* schema, void (*fill)());

    /// The connection while the lock is held, with a transaction that is to be ended.
    Lock read();
    /// Waits for other writers, some 5 s at most.
    Lock write();
    /// Ends a transaction for writing. Gives the version of what it left; 0 when that cannot be told or
    /// others have written since.
    std::uint64_t commit();
    void undo(bool wasReading);

    /// One transaction over many calls: winhost/changes.h.
    LSTATUS beginShared();
    LSTATUS endShared(bool keep);

    /// Closed, until the next call. Not to be unlocked before a fork is over: locks on files are a process's
    /// own, and SQLite's lists of them would be copied.
    Lock close();
    /// In the child of a fork: what another process began is not this one's.
    void leaveShared() { m_isShared = false; }

    /// Once in a connection, for a text that stays where it is.
    sqlite3_stmt* prepared(const char* sql);

private:
    /// Changes when another folder comes to the path, or a file comes to the folder or goes.
    using Listing = std::tuple<dev_t, ino_t, time_t, long, uid_t>;

    Listing listing() const;
    void prepare(bool forWriting);
    LSTATUS open();
    LSTATUS connect(bool forWriting);
    LSTATUS openLog();
    LSTATUS create();
    LSTATUS schemaStatus();
    void begin();
    LSTATUS run(const char* sql) const;
    void disconnect();
    bool isLost() const;

    std::mutex m_mutex; // of all that follows
    const std::string m_fileName;
    const char* const m_schema;
    void (*const m_fill)();
    std::string m_folder;
    std::string m_file;
    sqlite3* m_database = nullptr;
    std::unordered_map<const char*, std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>> m_statements;
    int m_index = -1;                      // open for writing; closing it would drop the process's locks
    LSTATUS m_whyReadOnly = ERROR_SUCCESS; // why the file is open for reading alone
    bool m_isShared = false;
    Listing m_listing; // before the file was opened
};

/// A statement with its arguments, and the rows that it answers.
class Query
{
public:
    /// Bytes among the arguments must stay as they are while the query lives.
    template <typename... Arguments>
    Query(Database& database, const char* sql, const Arguments&... arguments)
        : m_statement(database.prepared(sql))
    {
        (bind(arguments), ...);
    }
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    /// False behind the last row.
    bool next();
    /// For a statement without rows; ERROR_SUCCESS.
    LSTATUS run();

    std::int64_t number(int column) const;
    std::string_view bytes(int column) const; ///< until the next row

private:
    void bind(std::int64_t number);
    void bind(std::string_view bytes);

    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

} // namespace winhost::database
