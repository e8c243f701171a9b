// Functions that compiled code calls to check the stack cookie, the stack pages and the targets of indirect
// calls. Windows replaces the pointers to checkNothing and callUnchecked; Wine does not.
#include <windows.h>

extern "C" {

ULONGLONG __security_cookie = 0x00002B992DDFA232;

void __security_check_cookie(ULONGLONG cookie)
{
    if (cookie != __security_cookie) {
        __fastfail(2);
    }
}

// Touches each stack page that the caller is about to allocate. The register rax contains the size of the
// allocation in bytes.
__attribute__((naked)) void __chkstk()
{
    __asm__("pushq %rcx\n\tpushq %rax\n\tcmpq $4096, %rax\n\tleaq 24(%rsp), %rcx\n\tjb 1f\n"
            "2:\tsubq $4096, %rcx\n\torl $0, (%rcx)\n\tsubq $4096, %rax\n\tcmpq $4096, %rax\n\tja 2b\n"
            "1:\tsubq %rax, %rcx\n\torl $0, (%rcx)\n\tpopq %rax\n\tpopq %rcx\n\tretq");
}

static void checkNothing() {}

__attribute__((naked)) static void callUnchecked()
{
    __asm__("jmpq *%rax");
}

#pragma section(".00cfg", long, read)
__declspec(allocate(".00cfg")) extern const
    void* const __guard_check_icall_fptr = reinterpret_cast<const void*>(checkNothing);
__declspec(allocate(".00cfg")) extern const
    void* const __guard_dispatch_icall_fptr = reinterpret_cast<const void*>(callUnchecked);

// Defined by the linker: tables of valid call targets, and flags that say which tables exist.
extern const char __guard_fids_table[], __guard_fids_count[], __guard_flags[];
extern const char __guard_iat_table[], __guard_iat_count[];
extern const char __guard_longjmp_table[], __guard_longjmp_count[];

struct LoadConfig
{
    DWORD size;
    char before[84]; // fields that this runtime does not use
    const ULONGLONG* securityCookie;
    ULONGLONG safeHandlers[2];
    const void* const* guardCheck;
    const void* const* guardDispatch;
    const void* guardTable;
    const void* guardCount;
    const void* guardFlags;
    WORD integrity[4];
    const void* addressTakenImportTable;
    const void* addressTakenImportCount;
    const void* longJumpTable;
    const void* longJumpCount;
};
static_assert(sizeof(LoadConfig) == 192);

extern const LoadConfig _load_config_used = {sizeof(LoadConfig),
                                             {},
                                             &__security_cookie,
                                             {},
                                             &__guard_check_icall_fptr,
                                             &__guard_dispatch_icall_fptr,
                                             __guard_fids_table,
                                             __guard_fids_count,
                                             __guard_flags,
                                             {},
                                             __guard_iat_table,
                                             __guard_iat_count,
                                             __guard_longjmp_table,
                                             __guard_longjmp_count};
}
