// The virtual table of type_info, to which every type descriptor refers. Compiled separately and without
// RTTI: clang gives the table a name that type descriptors in the same source do not use.
#include <typeinfo>

static volatile int destroyed;

type_info::~type_info() noexcept
{
    destroyed = 1; // for an empty destructor clang emits no table
}
