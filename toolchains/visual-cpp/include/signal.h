// Wine's header does not have this type.
#pragma once

#include_next <signal.h>

typedef int sig_atomic_t;
