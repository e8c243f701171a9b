#include "module.h"

#include <dlfcn.h>

GetModuleCalls loadModule(const char* file, const char* function)
{
    void* const module = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    return module != nullptr ? reinterpret_cast<GetModuleCalls>(dlsym(module, function)) : nullptr;
}
