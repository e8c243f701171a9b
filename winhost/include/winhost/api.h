// Linkage of every function of winhost: C names, exported from its one shared library.
#pragma once

#define WINHOST_API extern "C" __attribute__((visibility("default")))
