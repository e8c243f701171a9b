#include "module.h"

#include <windows.h>

void* load(const char* file)
{
    return LoadLibraryA(file);
}

void unload(void* module)
{
    FreeLibrary(static_cast<HMODULE>(module));
}

const ModuleCalls* callsOf(void* module)
{
    const FARPROC function = GetProcAddress(static_cast<HMODULE>(module), "moduleCalls");
    return reinterpret_cast<decltype(&moduleCalls)>(reinterpret_cast<void*>(function))();
}

bool isLibraryLoaded()
{
    return GetModuleHandleA("RkUInfo.dll") != nullptr;
}
