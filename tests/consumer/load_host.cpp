#include "module.h"

#include <dlfcn.h>

void* load(const char* file)
{
    return dlopen(file, RTLD_NOW | RTLD_LOCAL);
}

void unload(void* module)
{
    dlclose(module);
}

const ModuleCalls* callsOf(void* module)
{
    return reinterpret_cast<decltype(&moduleCalls)>(dlsym(module, "moduleCalls"))();
}

bool isLibraryLoaded()
{
    void* const library = dlopen("libRkUInfo.so", RTLD_LAZY | RTLD_NOLOAD);
    return library != nullptr && dlclose(library) == 0;
}
