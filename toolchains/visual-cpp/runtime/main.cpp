// The entry point of a program that defines main.
#include "start.h"

int main(int count, char** arguments);

extern "C" int __cdecl _configure_narrow_argv(int mode);
extern "C" int __cdecl _initialize_narrow_environment();

extern "C" int mainCRTStartup()
{
    constexpr int consoleProgram = 1;
    constexpr int unexpandedArguments = 1;
    _set_app_type(consoleProgram);
    _configure_narrow_argv(unexpandedArguments);
    _initialize_narrow_environment();
    if (!startModule()) {
        return 255;
    }
    _crt_atexit(endModule);
    exit(main(*__p___argc(), *__p___argv()));
}
