// The registry's file: an SQLite database that the process opens at its first call, and again when the path
// leads to another file. There is one connection, which a call has to itself while it works.
#pragma once

#include <windows.h>

#include <cstdint>
#include <mutex>
#include <new>
#include <string_view>

struct sqlite3_stmt;

namespace winhost::registry {

using NodeId = std::int64_t;

constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;

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
        eChangingKeys,  ///< waits for other writers, 5 s at most; undone unless committed
        eChangingValues ///< the same, where no key comes or goes
    };

    explicit Access(Purpose purpose);
    ~Access();
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

    void commit();

private:
    std::unique_lock<std::mutex> m_lock;
    Purpose m_purpose;
};

/// A statement with its arguments, and the rows that it answers; in an Access.
class Query
{
public:
    /// Bytes among the arguments must stay as they are while the query lives.
    template <typename... Arguments>
    explicit Query(const char* sql, const Arguments&... arguments) : m_statement(prepared(sql))
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
    /// Once in a connection, for a text that stays where it is.
    static sqlite3_stmt* prepared(const char* sql);
    void bind(std::int64_t number);
    void bind(std::string_view bytes);

    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

} // namespace winhost::registry
