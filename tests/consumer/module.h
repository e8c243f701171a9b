// What the module gives to the program: one table of functions.
#pragma once

#include <RkUInfo.h>

struct ModuleCalls
{
    TarvoConfig* (*config)();
    void (*share)(long value);
    void (*fill)(VelaVariant& value);
    void (*throwConfigException)();
    void (*throwStatus)();
};

using GetModuleCalls = const ModuleCalls* (*)();

/// The module's function of that name, or null.
GetModuleCalls loadModule(const char* file, const char* function);
