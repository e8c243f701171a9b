// The virtual table of type_info, to which every type descriptor refers. It is compiled separately and
// without RTTI, because type descriptors in the same source would refer to it by another name than clang
// gives it.
#include <typeinfo>

static volatile int destroyed;

type_info::~type_info() noexcept
{
    destroyed = 1; // for an empty destructor clang emits no table
}
