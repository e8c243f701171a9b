// A client that only starts up; with an argument it also creates its tree and prints its private memory
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
