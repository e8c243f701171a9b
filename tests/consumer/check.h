// What the programs note of what holds: the first that does not ends them.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void check(bool holds, const char* what)
{
    std::printf("%s: %s\n", holds ? "ok" : "FAILED", what);
    std::fflush(stdout);
    if (!holds) {
        std::exit(1);
    }
}
