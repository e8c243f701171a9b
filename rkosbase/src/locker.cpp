// RkLocker: a slim lock of the system, which is a pointer-sized word, so that construction cannot fail.
#include "RkOsBase.h"

#include <windows.h>

static_assert(sizeof(SRWLOCK) == sizeof(RkLocker), "the lock is its one field");

RkLocker::RkLocker() : m_mutex(nullptr) {}

RkLocker::~RkLocker() = default;

void RkLocker::lock()
{
    AcquireSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&m_mutex));
}

void RkLocker::unlock()
{
    ReleaseSRWLockExclusive(reinterpret_cast<SRWLOCK*>(&m_mutex));
}
