// Visual C++ has the words of its structured exceptions in here too.
#pragma once

#include_next <windows.h>

#include <excpt.h>

#ifndef GetExceptionCode
#define GetExceptionCode _exception_code
#define GetExceptionInformation (struct _EXCEPTION_POINTERS*)_exception_info
#define AbnormalTermination _abnormal_termination
#endif
