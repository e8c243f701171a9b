// The virtual table of type_info, to which every type descriptor refers. In a separate source without RTTI,
// because clang would otherwise give the table another name than the one to which descriptors in the same
// source refer.
#include <typeinfo>

static volatile int destroyed;

type_info::~type_info() noexcept
{
    destroyed = 1; // for an empty destructor clang emits no table
}
