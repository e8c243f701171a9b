// Gives a host library the entry point of a Windows one: linked with it, its DllMain is called.
//
// The library's objects come first on the link line and this file, from an archive, after them. So the object
// below is made last of the library's static objects and goes first, both in a program's end and in dlclose.
#include <windows.h>

#include <dlfcn.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* reserved);

/// The linker is told to look for this name, which brings this file in.
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
