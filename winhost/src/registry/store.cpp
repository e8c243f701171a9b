#include "registry/store.h"

#include "registry/memory.h"

#include <pthread.h>

#include <utility>

// A key's number is higher than its parent's and is hardly ever used twice; the row of `shape` has the
// highest that was used: a step at random, since what is undone takes its number back. Names are UTF-16 as
// they were given; `folded` orders them.
const winhost::database::Content winhost::database::content = {
    "registry.db",
    "CREATE TABLE keys(parent INTEGER NOT NULL, folded BLOB NOT NULL, id INTEGER NOT NULL UNIQUE, name BLOB "
    "NOT NULL,"
    " sum INTEGER NOT NULL, PRIMARY KEY(parent, folded)) WITHOUT ROWID;"
    "CREATE TABLE vals(key INTEGER NOT NULL, folded BLOB NOT NULL, name BLOB NOT NULL, type INTEGER NOT NULL,"
    " data BLOB NOT NULL, sum INTEGER NOT NULL, PRIMARY KEY(key, folded)) WITHOUT ROWID;"
    "CREATE TABLE shape(last INTEGER NOT NULL)",
    winhost::registry::createFirstKeys};

namespace winhost::registry {

namespace {

// Neither may be in use by a thread that the child will not have.
database::Lock held;

void beforeFork()
{
    held = database::hold();
    memory().mutex.lock();
}

void afterFork()
{
    memory().mutex.unlock();
    // Emptied before it is unlocked, which lets another thread's fork begin.
    const database::Lock ended = std::move(held);
}

void afterForkInChild()
{
    database::forsake();
    afterFork();
}

const int isPrepared = pthread_atfork(beforeFork, afterFork, afterForkInChild);

} // namespace

/// Runs after the destructors of all static objects.
__attribute__((destructor)) void leaveStore()
{
    database::leave();
}

Access::Access(Purpose purpose)
    : m_lock(purpose == eReading ? database::read() : database::write()), m_purpose(purpose)
{
    const std::lock_guard<std::mutex> lock(memory().mutex);
    memory().follow(database::contentVersion());
}

Access::~Access()
{
    if (!m_isCommitted) {
        database::undo(m_purpose == eReading);
    }
}

void Access::commit()
{
    const std::uint64_t version = database::commit();
    m_isCommitted = true;
    ++ownChanges;
    if (version != 0) {
        const std::lock_guard<std::mutex> lock(memory().mutex);
        memory().advance(version, m_purpose == eChangingValues);
    }
}

} // namespace winhost::registry
