#include "module.h"

#include <windows.h>

GetModuleCalls loadModule(const char* file, const char* function)
{
    HMODULE const module = LoadLibraryA(file);
    return module != nullptr
               ? reinterpret_cast<GetModuleCalls>(reinterpret_cast<void*>(GetProcAddress(module, function)))
               : nullptr;
}
