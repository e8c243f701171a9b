// Constructs and destroys a module's static objects. The linker places pointers to C initialisers between
// __xi_a and __xi_z, and pointers to C++ initialisers between __xc_a and __xc_z.
#include "start.h"

namespace {

using Initialiser = void(__cdecl*)();
using CInitialiser = int(__cdecl*)();

struct OnExitTable
{
    void* first;
    void* last;
    void* end;
};
OnExitTable onExit;

} // namespace

extern "C" {

int __cdecl _initialize_onexit_table(OnExitTable* table);
int __cdecl _register_onexit_function(OnExitTable* table, int(__cdecl* function)());
int __cdecl _execute_onexit_table(OnExitTable* table);
void __cdecl _initterm(Initialiser* first, Initialiser* last);
int __cdecl _initterm_e(CInitialiser* first, CInitialiser* last);

int _fltused = 0x9875;

#pragma section(".CRT$XIA", long, read)
#pragma section(".CRT$XIZ", long, read)
#pragma section(".CRT$XCA", long, read)
#pragma section(".CRT$XCZ", long, read)
__declspec(allocate(".CRT$XIA")) CInitialiser __xi_a[] = {nullptr};
__declspec(allocate(".CRT$XIZ")) CInitialiser __xi_z[] = {nullptr};
__declspec(allocate(".CRT$XCA")) Initialiser __xc_a[] = {nullptr};
__declspec(allocate(".CRT$XCZ")) Initialiser __xc_z[] = {nullptr};

int __cdecl atexit(void(__cdecl* function)())
{
    return _register_onexit_function(&onExit, reinterpret_cast<int(__cdecl*)()>(function));
}

bool startModule()
{
    _initialize_onexit_table(&onExit);
    if (_initterm_e(__xi_a, __xi_z) != 0) {
        return false;
    }
    _initterm(__xc_a, __xc_z);
    return true;
}

void endModule()
{
    _execute_onexit_table(&onExit);
}
}
