// What the programs share: their notes of what holds.
#pragma once

#include <cstdio>

inline int& failures()
{
    static int count = 0;
    return count;
}

inline void check(bool holds, const char* what)
{
    std::printf("%s: %s\n", holds ? "ok" : "FAILED", what);
    std::fflush(stdout);
    failures() += holds ? 0 : 1;
}

inline bool equal(const wchar_t* left, const wchar_t* right)
{
    while (*left != 0 && *left == *right) {
        ++left;
        ++right;
    }
    return *left == *right;
}
