// Defines the linkage of winhost's functions: they have C linkage, and the shared library exports them.
#pragma once

#define WINHOST_API extern "C" __attribute__((visibility("default")))
