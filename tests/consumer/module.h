// What the module gives to a program: one table of functions.
#pragma once

#include <RkUInfo.h>

struct ModuleCalls
{
    TarvoConfig* (*config)();
    /// Starts up and reads the language library; whether both went well.
    bool (*start)();
    void (*share)(long value);
    void (*fill)(VelaVariant& value);
    void (*throwConfigException)();
    void (*throwStatus)();
};

using GetModuleCalls = const ModuleCalls* (*)();

/// A module that a program loads. Its calls are gone when it is.
class LoadedModule
{
public:
    explicit LoadedModule(const char* file);
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    ~LoadedModule();

    /// Null when it could not be loaded.
    const ModuleCalls* calls() const;

    /// Whether the library, whatever loaded it, is in this process.
    static bool isLibraryLoaded();

private:
    void* m_handle;
};
