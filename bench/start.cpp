// A client that starts and ends; with an argument it creates its tree and tells its private memory.
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
