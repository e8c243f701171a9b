#pragma once

#include <corecrt.h>

#define _HAS_EXCEPTIONS 1
