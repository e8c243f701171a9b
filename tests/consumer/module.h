// What the module gives to a program, one table of functions, and how a program loads it.
#pragma once

#include <RkUInfo.h>

struct ModuleCalls
{
    TarvoConfig* (*config)();
    /// Starts up and reads the language library; whether both went well.
    bool (*start)();
    void (*fill)(VelaVariant& value);
    void (*throwConfigException)();
    void (*throwStatus)();
};

extern "C" const ModuleCalls* moduleCalls();

/// A loaded module, or null.
void* load(const char* file);
void unload(void* module);
/// The module's moduleCalls().
const ModuleCalls* callsOf(void* module);
/// Whether the library, whatever loaded it, is in this process.
bool isLibraryLoaded();
