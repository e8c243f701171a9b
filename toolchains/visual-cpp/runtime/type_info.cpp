// type_info's virtual table, which every type descriptor refers to. Alone, and without RTTI: clang would name
// the table that it makes apart from the one that the descriptors of the same source refer to.
#include <typeinfo>

static volatile int destroyed;

type_info::~type_info() noexcept
{
    destroyed = 1; // clang leaves out the table of an empty one
}
