// A client that starts the library. With an argument, the program also creates its tree and prints its memory
// usage.
#include "memory.h"
#include "settings.h"

int main(int argc, char**)
{
    bench::start();
    if (argc > 1) {
        bench::require(CreateConfigReg() == TarvoConfig::eOk, "CreateConfigReg");
        bench::printMemory();
    }
    return 0;
}
