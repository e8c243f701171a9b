// Adds the keywords for structured exception handling; Visual C++'s windows.h also defines them.
#pragma once

#include_next <windows.h>

#include <excpt.h>

#ifndef GetExceptionCode
#define GetExceptionCode _exception_code
#define GetExceptionInformation (struct _EXCEPTION_POINTERS*)_exception_info
#define AbnormalTermination _abnormal_termination
#endif
