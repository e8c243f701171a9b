// The registry's LMDB file: found, made and opened at the first transaction, and open until the process ends.
// A forked process must start another program before it calls the registry.
#pragma once

#include <lmdb.h>

#include <windows.h>

namespace winhost::registry {

/// The Win32 error for what LMDB or the system answered.
LSTATUS statusOf(int code);

/// What the functions of the tree work in.
struct Transaction
{
    MDB_txn* txn = nullptr;
    MDB_dbi database = 0;
};

/// A view of one moment, in the thread's own reader, which is kept and renewed. One at a time in a thread.
class ReadTransaction
{
public:
    ReadTransaction();
    ~ReadTransaction();
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;

    LSTATUS status() const { return m_status; }
    const Transaction& get() const { return m_transaction; }
    /// Grows with every write of any process.
    std::size_t version() const { return mdb_txn_id(m_transaction.txn); }

private:
    Transaction m_transaction;
    LSTATUS m_status;
};

/// Undone unless committed.
class WriteTransaction
{
public:
    WriteTransaction();
    ~WriteTransaction();
    WriteTransaction(const WriteTransaction&) = delete;
    WriteTransaction& operator=(const WriteTransaction&) = delete;

    LSTATUS status() const { return m_status; }
    const Transaction& get() const { return m_transaction; }
    LSTATUS commit();

private:
    Transaction m_transaction;
    LSTATUS m_status;
    bool m_hasRoom = true; // on the disk
};

} // namespace winhost::registry
