// What the programs note of what holds: the first that does not ends them.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void check(bool holds, const char* what)
{
    std::fprintf(stderr, "%s: %s\n", holds ? "ok" : "FAILED", what);
    if (!holds) {
        std::exit(1);
    }
}
