// A program that is not linked with the library: what it loads and unloads brings the library in and takes it
// away.
#include "check.h"
#include "module.h"

int main(int argc, char** argv)
{
    for (int round = 0; round < 2; ++round) {
        void* const module = load(argc == 2 ? argv[1] : "");
        check(module != nullptr && isLibraryLoaded(), "the module and the library loaded");
        check(callsOf(module)->start(), "start-up, and a text of the language");
        unload(module);
        check(!isLibraryLoaded(), "both unloaded");
    }
}
