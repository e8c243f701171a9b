// In Visual C++ builds only: exports a name that identifies the C runtime, so that a client built for another
// one fails to link or load.
#include <RkUInfo/Export.h>

extern "C" RKUINFO_API void RKUINFO_BUILT_FOR() {}
