// Functions that the entry points share.
#pragma once

#define atexit importedAtexit // an import in Wine's header, but each module defines its own
#include <stdlib.h>
#include <windows.h>
#undef atexit

extern "C" {

/// Constructs the module's static objects. Returns false if a C initialiser fails.
bool startModule();

/// Destroys the module's static objects in reverse order.
void endModule();

int __cdecl _crt_atexit(void(__cdecl* function)());
void __cdecl _set_app_type(int type);
}
