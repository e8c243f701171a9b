// What the programs and the module share.
#pragma once

#include <RkUInfo.h>

#include <cstdio>
#include <cstdlib>

/// What the module gives to a program: one table of functions.
struct ModuleCalls
{
    TarvoConfig* (*config)();
    /// Starts a library up that has not been, and reads the language library; whether all was so.
    bool (*start)();
    void (*fill)(VelaVariant& value);
    void (*throwConfigException)();
    void (*throwStatus)();
};

extern "C" const ModuleCalls* moduleCalls();

/// Ends the program unless this holds.
inline void check(bool holds, const char* what)
{
    std::fprintf(stderr, "%s: %s\n", holds ? "ok" : "FAILED", what);
    if (!holds) {
        std::exit(1);
    }
}
