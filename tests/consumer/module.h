// What the module gives to a program: one table of functions.
#pragma once

#include <RkUInfo.h>

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
