// In Visual C++ builds only: exports a function whose name identifies the library's C runtime. A client
// imports the function named after the client's C runtime, so it cannot link with or load a library that was
// built for another runtime.
#include <RkUInfo/Export.h>

extern "C" RKUINFO_API void RKUINFO_BUILT_FOR() {}
