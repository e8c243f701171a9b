#include "module.h"

#include <windows.h>

LoadedModule::LoadedModule(const char* file) : m_handle(LoadLibraryA(file)) {}

LoadedModule::~LoadedModule()
{
    if (m_handle != nullptr) {
        FreeLibrary(static_cast<HMODULE>(m_handle));
    }
}

const ModuleCalls* LoadedModule::calls() const
{
    if (m_handle == nullptr) {
        return nullptr;
    }
    const FARPROC function = GetProcAddress(static_cast<HMODULE>(m_handle), "moduleCalls");
    return reinterpret_cast<GetModuleCalls>(reinterpret_cast<void*>(function))();
}

bool LoadedModule::isLibraryLoaded()
{
    return GetModuleHandleA("RkUInfo.dll") != nullptr;
}
