#include "loading/loading.h"

void loadLibrariesSafely() {}
