// The SQLite database that all processes of a user share. The first call opens the database; later calls
// reopen it when the path leads to another file. The process has one connection, which each call locks. This
// module does not depend on the tables.
#pragma once

#include "database/descriptors.h"

#include <sqlite3.h>
#include <windows.h>

#include <cstdint>
#include <mutex>
#include <new>
#include <string_view>

namespace winhost::database {

/// An exception that makes the call return this status.
struct Failure
{
    LSTATUS status;
};

inline void require(bool holds, LSTATUS status = ERROR_REGISTRY_CORRUPT)
{
    if (!holds) {
        throw Failure{status};
    }
}

inline void check(LSTATUS status)
{
    require(status == ERROR_SUCCESS, status);
}

/// Returns the result of work(), or the status that it throws.
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

/// The file's name, the SQL that creates the tables of a new file, and the function that adds their rows.
/// registry/tree.cpp defines `content`.
struct Content
{
    const char* file;
    const char* schema;
    void (*fill)();
};
extern const Content content;

/// Returns a number that identifies the content, or 0 if the content is unknown. The number stays the same
/// until a process writes. Takes no lock and makes no system call.
std::uint64_t contentVersion();

using Lock = std::unique_lock<std::mutex>;

/// Locks the connection. The destructor undoes the transaction unless commit() or share() succeeded.
class Transaction
{
public:
    /// If the file does not exist, a write transaction creates it, and a read transaction reads what a new
    /// file would contain. A transaction waits at most about 5 s for other processes.
    explicit Transaction(bool isWriting);
    ~Transaction();

    /// Returns the version of the content that the transaction reads; 0 if it is unknown.
    std::uint64_t version() const;
    /// Returns the version of the committed content; 0 if that is unknown or another process has written
    /// since.
    std::uint64_t commit();
    /// Leaves the transaction open, so that it includes all further changes that the process makes.
    void share();

private:
    Lock m_lock;
    bool m_isWriting;
    bool m_isOver = false;
};

/// Returns the lock; the caller must hold it until a fork is complete. Rolls back a shared transaction.
Lock hold();
/// Abandons the parent's connection. Called in the child of a fork.
void forsake();
/// Closes the store when the process exits. The last process writes the log back.
void leave();

/// A prepared statement with its arguments, and the rows that it returns. The SQL must be a literal: its
/// address is the key under which the statement is cached.
class Query
{
public:
    /// Byte arguments are not copied and must outlive the query.
    template <typename... Arguments>
    explicit Query(const char* sql, const Arguments&... arguments) : m_statement(prepared(sql))
    {
        (bind(arguments), ...);
    }
    ~Query() { sqlite3_reset(m_statement); }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    /// Moves to the next row. Returns false if there is none.
    bool next();
    /// Runs a statement that returns no rows.
    void run() { require(!next()); }

    std::int64_t number(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::string_view bytes(int column) const; ///< valid until the next row is read

private:
    static sqlite3_stmt* prepared(const char* sql);
    void bind(std::int64_t number);
    void bind(std::string_view bytes);

    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

} // namespace winhost::database
