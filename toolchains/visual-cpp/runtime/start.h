// What the entry points share.
#pragma once

#define atexit importedAtexit // Wine declares it as imported, which the module's own is not
#include <stdlib.h>
#include <windows.h>
#undef atexit

extern "C" {

/// Makes the module's static objects; false when one of its C initialisers fails.
bool startModule();

/// Destroys them, the last first.
void endModule();

int __cdecl _crt_atexit(void(__cdecl* function)());
void __cdecl _set_app_type(int type);
}
