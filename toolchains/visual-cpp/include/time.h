// Adds the parts of Visual C++'s time.h that are missing from Wine's.
#pragma once

#include_next <time.h>

#ifndef _TIMESPEC_DEFINED
#define _TIMESPEC_DEFINED
struct timespec
{
    time_t tv_sec;
    long tv_nsec;
};
#endif

static inline errno_t localtime_s(struct tm* out, const time_t* in)
{
    return _localtime64_s(out, in);
}
