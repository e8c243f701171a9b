// The SQLite database that all processes of a user share: opened at the first call, and again when the path
// leads to another file. Does not know its tables. There is one connection,
// which a call locks while it uses it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <mutex>
#include <new>
#include <string_view>

struct sqlite3_stmt;

namespace winhost::database {

/// Thrown to end a call with this result.
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

/// Defined by the user of this module: the name of the file, the tables of a new one, and the function that
/// adds their rows.
struct Content
{
    const char* file;
    const char* schema;
    void (*fill)();
};
extern const Content content;

/// Identifies the content: unchanged as long as no process has written. 0 if it is unknown. Takes no lock and
/// makes no system call.
std::uint64_t contentVersion();

using Lock = std::unique_lock<std::mutex>;

/// A transaction, which has the connection to itself. Undone unless it is committed.
class Transaction
{
public:
    /// For reading, reads what a new file would contain if there is none. For writing, creates the file if
    /// there is none, and waits some 5 s at most for other writers.
    explicit Transaction(bool isWriting);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Returns the version of the content that it leaves; 0 if that is unknown or others have written since.
    std::uint64_t commit();
    /// Leaves it open, for all changes of the process to be part of it.
    void share();

private:
    Lock m_lock;
    bool m_isWriting;
    bool m_isOver = false;
};

/// Returns the lock, which the caller holds until a fork is done. Undoes a shared transaction.
Lock hold();
/// In the child of a fork: leaves the connection to the parent.
void forsake();
/// At the end of the process: the last one writes the log back.
void leave();

/// A prepared statement with its arguments, and the rows that it returns. The SQL must be a literal: its
/// address is the key under which the statement is cached.
class Query
{
public:
    /// Does not copy bytes among the arguments, which must outlive the query.
    template <typename... Arguments>
    explicit Query(const char* sql, const Arguments&... arguments) : m_statement(prepared(sql))
    {
        (bind(arguments), ...);
    }
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    /// False after the last row.
    bool next();
    /// For a statement without rows.
    void run();

    std::int64_t number(int column) const;
    std::string_view bytes(int column) const; ///< until the next row

private:
    static sqlite3_stmt* prepared(const char* sql);
    void bind(std::int64_t number);
    void bind(std::string_view bytes);

    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

} // namespace winhost::database
