// Shared by the programs and the module.
#pragma once

#include <RkUInfo.h>

#include <cstdio>
#include <cstdlib>

/// The functions that a program calls in the module.
struct ModuleCalls
{
    TarvoConfig* (*config)();
    /// Starts a newly loaded library and reads the language library; returns whether both succeeded.
    bool (*start)();
    void (*fill)(VelaVariant& value);
    void (*throwConfigException)();
    void (*throwStatus)();
};

extern "C" const ModuleCalls* moduleCalls();

/// Exits with code 1 unless the condition holds.
inline void check(bool holds, const char* what)
{
    std::fprintf(stderr, "%s: %s\n", holds ? "ok" : "FAILED", what);
    if (!holds) {
        std::exit(1);
    }
}
