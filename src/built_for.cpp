// Built for Visual C++: the name by which a client finds out at link and load time that it shares this
// library's runtime.
#include <RkUInfo/Export.h>

extern "C" RKUINFO_API void RKUINFO_BUILT_FOR() {}
