// RkLocker: an SRWLOCK, which is one pointer in size and needs no allocation, so construction cannot fail.
#include "RkOsBase.h"

#include <windows.h>

static_assert(sizeof(SRWLOCK) == sizeof(RkLocker), "an SRWLOCK must fit RkLocker's only field");

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
