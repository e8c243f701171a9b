// What Visual C++'s crtdbg.h has beside Wine's; GoogleTest uses it.
#pragma once

#include_next <crtdbg.h>

#define _CRTDBG_FILE_STDERR 0
#define _CrtSetReportFile(type, file) 0
