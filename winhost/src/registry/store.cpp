#include "registry/store.h"

#include "registry/memory.h"

#include <winhost/changes.h>

#include <pthread.h>

#include <utility>

namespace winhost::registry {

namespace {

// A key's number is higher than its parent's and is hardly ever used twice; the row of `shape` has the
// highest that was used: a step at random, since what is undone takes its number back. Names are UTF-16 as
// they were given; `folded` orders them.
constexpr const char* schema =
    "CREATE TABLE keys(parent INTEGER NOT NULL, folded BLOB NOT NULL, id INTEGER NOT NULL UNIQUE, name BLOB "
    "NOT NULL,"
    " sum INTEGER NOT NULL, PRIMARY KEY(parent, folded)) WITHOUT ROWID;"
    "CREATE TABLE vals(key INTEGER NOT NULL, folded BLOB NOT NULL, name BLOB NOT NULL, type INTEGER NOT NULL,"
    " data BLOB NOT NULL, sum INTEGER NOT NULL, PRIMARY KEY(key, folded)) WITHOUT ROWID;"
    "CREATE TABLE shape(last INTEGER NOT NULL)";

// Neither may be in use by a thread that the child will not have.
database::Database::Lock closed;

void beforeFork()
{
    closed = store().close();
    memory().mutex.lock();
}

void afterFork()
{
    memory().mutex.unlock();
    // Emptied before it is unlocked, which lets another thread's fork begin.
    const database::Database::Lock ended = std::move(closed);
}

void afterForkInChild()
{
    store().leaveShared();
    afterFork();
}

} // namespace

database::Database& store()
{
    static auto* const created = [] { // never destroyed: it may be used while the process ends
        pthread_atfork(beforeFork, afterFork, afterForkInChild);
        return new database::Database("registry.db", schema, createFirstKeys);
    }();
    return *created;
}

Access::Access(Purpose purpose)
    : m_lock(purpose == eReading ? store().read() : store().write()), m_purpose(purpose)
{
    const std::lock_guard<std::mutex> lock(memory().mutex);
    memory().follow(database::contentVersion());
}

Access::~Access()
{
    if (!m_isCommitted) {
        store().undo(m_purpose == eReading);
    }
}

void Access::commit()
{
    const std::uint64_t version = store().commit();
    m_isCommitted = true;
    if (version != 0) {
        const std::lock_guard<std::mutex> lock(memory().mutex);
        memory().advance(version, m_purpose == eChangingValues);
    }
}

} // namespace winhost::registry

LSTATUS winhostBeginRegistryChanges()
{
    return winhost::registry::store().beginShared();
}

LSTATUS winhostEndRegistryChanges(BOOL keep)
{
    return winhost::registry::store().endShared(keep != FALSE);
}
