// Thread-safe construction of local statics, and the thread-local storage that it uses.
#include <windows.h>

extern "C" {

ULONG _tls_index;
#pragma section(".tls", long, read, write)
#pragma section(".tls$ZZZ", long, read, write)
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;
#pragma section(".CRT$XLA", long, read)
#pragma section(".CRT$XLZ", long, read)
__declspec(allocate(".CRT$XLA")) PIMAGE_TLS_CALLBACK __xl_a = nullptr;
__declspec(allocate(".CRT$XLZ")) PIMAGE_TLS_CALLBACK __xl_z = nullptr;
#pragma section(".rdata$T", long, read)
__declspec(allocate(".rdata$T")) extern const IMAGE_TLS_DIRECTORY64 _tls_used = {
    reinterpret_cast<ULONGLONG>(&_tls_start),
    reinterpret_cast<ULONGLONG>(&_tls_end),
    reinterpret_cast<ULONGLONG>(&_tls_index),
    reinterpret_cast<ULONGLONG>(&__xl_a + 1),
    0,
    0};

// The guard of a local static is 0 before construction, -1 during construction, and then the new value of
// _Init_global_epoch. Compiled code calls _Init_thread_header if the guard is greater than
// _Init_thread_epoch.
int _Init_global_epoch = static_cast<int>(0x80000000);
__declspec(thread) int _Init_thread_epoch = static_cast<int>(0x80000000);
static SRWLOCK lock = SRWLOCK_INIT;
static CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;

void __cdecl _Init_thread_header(int* const guard)
{
    AcquireSRWLockExclusive(&lock);
    while (*guard == -1) {
        SleepConditionVariableSRW(&changed, &lock, INFINITE, 0);
    }
    if (*guard == 0) {
        *guard = -1;
    } else {
        _Init_thread_epoch = _Init_global_epoch;
    }
    ReleaseSRWLockExclusive(&lock);
}

void __cdecl _Init_thread_abort(int* const guard)
{
    AcquireSRWLockExclusive(&lock);
    *guard = 0;
    ReleaseSRWLockExclusive(&lock);
    WakeAllConditionVariable(&changed);
}

void __cdecl _Init_thread_footer(int* const guard)
{
    AcquireSRWLockExclusive(&lock);
    *guard = ++_Init_global_epoch;
    _Init_thread_epoch = *guard;
    ReleaseSRWLockExclusive(&lock);
    WakeAllConditionVariable(&changed);
}
}
