// The virtual table of type_info, to which every type descriptor refers. This file is compiled without RTTI:
// otherwise clang would add a type descriptor that refers to an undefined symbol.
#include <typeinfo>

static volatile int destroyed;

type_info::~type_info() noexcept
{
    destroyed = 1; // if the destructor is empty, clang emits no virtual table
}
