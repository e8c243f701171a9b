// The entry point of a host library: calls the DllMain of the library that contains this file.
//
// This file comes from an archive, so it follows the library's objects on the link line. Therefore
// `entryPoint` is the last of the library's static objects to be created and the first to be destroyed, both
// when a program exits and in dlclose.
#include <windows.h>

#include <dlfcn.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved);

/// The linker option -u requests this symbol, so that the linker adds this file to the library.
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
