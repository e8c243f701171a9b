// A program that is not linked with the library, but loads and unloads a module that is linked with it.
#define RKUINFO_NOT_LINKED
#include "consumer.h"

#ifdef _WIN32
#include <windows.h>
const auto load = &LoadLibraryA;
const auto find = &GetProcAddress;
const auto unload = &FreeLibrary;
#else
#include <dlfcn.h>
const auto load = [](const char* file) { return dlopen(file, RTLD_NOW | RTLD_LOCAL); };
const auto find = &dlsym;
const auto unload = &dlclose;
#endif

int main(int argc, char** argv)
{
    for (int round = 0; round < 2; ++round) {
        const auto module = load(argc == 2 ? argv[1] : "");
        const auto calls =
            reinterpret_cast<decltype(&moduleCalls)>(reinterpret_cast<void*>(find(module, "moduleCalls")));
        check(calls != nullptr, "the module loaded");
        check(calls()->start(), "start-up of a newly loaded library");
        unload(module);
    }
}
