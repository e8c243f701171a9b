// An empty program, the baseline for start-up costs. With an argument, prints its private memory usage.
#include "memory.h"

int main(int argc, char**)
{
    if (argc > 1) {
        bench::printMemory();
    }
    return 0;
}
