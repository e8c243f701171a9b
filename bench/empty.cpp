// A program that does nothing, to compare a start with; with an argument it tells its private memory.
#include "memory.h"

int main(int argc, char**)
{
    if (argc > 1) {
        bench::printMemory();
    }
    return 0;
}
