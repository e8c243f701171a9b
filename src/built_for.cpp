// In Visual C++ builds only: exports a name that identifies the C runtime. A client built for a different C
// runtime fails to link or load.
#include <RkUInfo/Export.h>

extern "C" RKUINFO_API void RKUINFO_BUILT_FOR() {}
