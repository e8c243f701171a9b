// The entry point of a program that defines wmain.
#include "start.h"

int wmain(int count, wchar_t** arguments);

extern "C" int __cdecl _configure_wide_argv(int mode);
extern "C" int __cdecl _initialize_wide_environment();

extern "C" int wmainCRTStartup()
{
    constexpr int consoleProgram = 1;
    constexpr int unexpandedArguments = 1;
    _set_app_type(consoleProgram);
    _configure_wide_argv(unexpandedArguments);
    _initialize_wide_environment();
    if (!startModule()) {
        return 255;
    }
    _crt_atexit(endModule);
    exit(wmain(*__p___argc(), *__p___wargv()));
}
