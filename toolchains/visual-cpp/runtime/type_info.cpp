// The virtual table of type_info, to which every type descriptor refers. This file is compiled without RTTI,
// because type descriptors in the file that defines the table would refer to the table by a different name.
#include <typeinfo>

static volatile int destroyed;

type_info::~type_info() noexcept
{
    destroyed = 1; // clang emits no virtual table for an empty destructor
}
