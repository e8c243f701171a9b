// Reads one integer the given number of times, for tools that count instructions and system calls.
#include "settings.h"

#include <cstdlib>

int main(int argc, char** argv) // NOLINT(bugprone-exception-escape): it then terminates
{
    const TarvoConfig& config = bench::startWithSettings();
    VelaVariant value;
    for (long i = argc > 1 ? std::atol(argv[1]) : 1; i > 0; --i) {
        bench::require(config.getValue(TarvoConfig::eSettings, bench::framesPath, value) == TarvoConfig::eOk,
                       "getValue");
    }
    return 0;
}
