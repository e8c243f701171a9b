// Does nothing, as the baseline for start-up costs; with an argument it prints its private memory usage.
#include "memory.h"

int main(int argc, char**)
{
    if (argc > 1) {
        bench::printMemory();
    }
    return 0;
}
