// A program that is not linked with the library: what it loads and unloads brings the library in and takes it
// away.
#include "check.h"
#include "module.h"

int main(int argc, char** argv)
{
    for (int round = 0; round < 2 && argc == 2; ++round) {
        {
            const LoadedModule module(argv[1]);
            check(module.calls() != nullptr && LoadedModule::isLibraryLoaded(),
                  "the module and the library loaded");
            check(module.calls() != nullptr && module.calls()->start(),
                  "start-up, and a text of the language");
        }
        check(!LoadedModule::isLibraryLoaded(), "both unloaded");
    }
    return argc == 2 && failures() == 0 ? 0 : 1;
}
