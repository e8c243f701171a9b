// The registry's file: an SQLite database that the process opens at its first call, and again when the path
// leads to another file. There is one connection, which a call has to itself while it works.
#pragma once

#include <windows.h>

#include <cstdint>
#include <mutex>
#include <string_view>

struct sqlite3_stmt;

namespace winhost::registry {

using NodeId = std::int64_t;

constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;

/// Tells the store's content: it is the same as long as nobody has written, in this process or another. 0
/// where that cannot be told. Takes no lock and no system call.
std::uint64_t storeVersion();

/// The store for one call.
class Access
{
public:
    enum Purpose
    {
        eReading,
        eWriting,  ///< waits for other writers, 5 s at most; undone unless committed
        eWritingOn ///< the same, for the calls that follow too: winhost/changes.h
    };

    explicit Access(Purpose purpose);
    ~Access();
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

    LSTATUS status() const { return m_status; }
    LSTATUS commit();
    /// Behind a commit: the version of what it left, 0 when that cannot be told or others have written since.
    std::uint64_t versionBehind() const { return m_versionBehind; }

private:
    std::unique_lock<std::mutex> m_lock;
    Purpose m_purpose;
    LSTATUS m_status;
    std::uint64_t m_versionBehind = 0;
};

/// What the store is asked; prepared when it is first used.
struct Statement
{
    const char* sql;
    sqlite3_stmt* prepared = nullptr;
    unsigned connection = 0; // for which it was prepared
};

/// A statement with its arguments, and the rows that it answers; in an Access.
class Query
{
public:
    explicit Query(Statement& statement);
    ~Query();
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    /// The next argument. Bytes must stay as they are while the query lives.
    Query& with(std::int64_t number);
    Query& with(std::string_view bytes);

    /// False behind the last row and after a failure.
    bool next();
    /// Why there is no further row: ERROR_SUCCESS at the end.
    LSTATUS status() const { return m_status; }
    /// For a statement without rows.
    LSTATUS run();

    std::int64_t number(int column) const;
    std::string_view bytes(int column) const; ///< until the next row

private:
    void check(int result);

    LSTATUS m_status = ERROR_SUCCESS;
    sqlite3_stmt* m_statement = nullptr;
    int m_bound = 0;
};

} // namespace winhost::registry
