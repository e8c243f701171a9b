#include "module.h"

#include <dlfcn.h>

LoadedModule::LoadedModule(const char* file) : m_handle(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}

LoadedModule::~LoadedModule()
{
    if (m_handle != nullptr) {
        dlclose(m_handle);
    }
}

const ModuleCalls* LoadedModule::calls() const
{
    return m_handle != nullptr ? reinterpret_cast<GetModuleCalls>(dlsym(m_handle, "moduleCalls"))() : nullptr;
}

bool LoadedModule::isLibraryLoaded()
{
    void* const library = dlopen("libRkUInfo.so", RTLD_LAZY | RTLD_NOLOAD);
    if (library != nullptr) {
        dlclose(library);
    }
    return library != nullptr;
}
