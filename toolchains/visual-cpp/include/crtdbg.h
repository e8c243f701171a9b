// Adds the parts of Visual C++'s crtdbg.h that GoogleTest uses and that are missing from Wine's.
#pragma once

#include_next <crtdbg.h>

#define _CRTDBG_FILE_STDERR 0
#define _CrtSetReportFile(type, file) 0
