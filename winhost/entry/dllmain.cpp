// The entry point of a host library: calls the DllMain of the library that contains this file.
//
// This file is in an archive, which the linker reads after the library's own objects. Therefore `entryPoint`
// is created after all other static objects of the library, and destroyed before them.
#include <windows.h>

#include <dlfcn.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved);

/// The linker option -u winhostDllMain makes the linker take this file from its archive.
extern "C" const int winhostDllMain = 0;

namespace {

class EntryPoint
{
public:
    EntryPoint() { call(DLL_PROCESS_ATTACH); }
    EntryPoint(const EntryPoint&) = delete;
    EntryPoint& operator=(const EntryPoint&) = delete;
    ~EntryPoint() { call(DLL_PROCESS_DETACH); }

private:
    void call(DWORD reason) const
    {
        Dl_info library = {};
        if (dladdr(this, &library) != 0) {
            DllMain(static_cast<HINSTANCE>(library.dli_fbase), reason, nullptr);
        }
    }
};

const EntryPoint entryPoint;

} // namespace
