// The registry's file: an SQLite database that the process opens at its first call and whenever the file is
// another, over one connection. While a call works it has the connection to itself.
#pragma once

#include <windows.h>

#include <csignal>
#include <cstdint>
#include <optional>
#include <string_view>

struct sqlite3_stmt;

namespace winhost::registry {

using NodeId = std::int64_t;

constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;

/// Tells the store's content: it is the same as long as nobody has written, in this process or another. 0 where
/// that cannot be told. Takes no lock and no system call.
std::uint64_t storeVersion();

/// What the store is asked, in store.cpp as SQL.
enum class Sql : std::uint8_t
{
    eFindKey,
    eKeyExists,
    eFindValue,
    eSubKeysFrom,
    eSubKeysBehind,
    eValuesFrom,
    eValuesBehind,
    eMeasureSubKeys,
    eMeasureValues,
    eShape,
    eNextShape,
    eAddKey,
    ePutValue,
    eRemoveValue,
    eRemoveKey,
    eRemoveValues,
    eRemoveValuesBelow,
    eRemoveKeysBelow,
    eCount
};

/// While it lives, a write past the process's file size limit is an error, and not the end of the process.
class NoFileSizeSignal
{
public:
    NoFileSizeSignal();
    ~NoFileSizeSignal();
    NoFileSizeSignal(const NoFileSizeSignal&) = delete;
    NoFileSizeSignal& operator=(const NoFileSizeSignal&) = delete;

private:
    sigset_t m_before;
};

/// The store for one call. One at a time in a thread.
class Access
{
public:
    enum Purpose
    {
        eReading,
        eWriting ///< waits for other writers, 5 s at most; undone unless committed
    };

    explicit Access(Purpose purpose);
    ~Access();
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

    LSTATUS status() const { return m_status; }
    LSTATUS commit();

private:
    std::optional<NoFileSizeSignal> m_signal;
    Purpose m_purpose;
    bool m_isLocked = false;
    bool m_isCommitted = false;
    LSTATUS m_status;
};

/// A statement with its arguments, and the rows that it answers; in an Access.
class Query
{
public:
    explicit Query(Sql sql);
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
