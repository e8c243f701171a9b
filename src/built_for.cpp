// In Visual C++ builds only: exports a name that identifies the C runtime. A client imports the name of
// its own C runtime, so it neither links with nor loads a library built for a different one.
#include <RkUInfo/Export.h>

extern "C" RKUINFO_API void RKUINFO_BUILT_FOR() {}
