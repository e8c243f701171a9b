#include "memory.h"

#include "support/imports.h"

#include <utility>

namespace {

using Allocate = void* (*)(std::size_t);

Allocate real;
bool refused;

void* refuseOnce(std::size_t size)
{
    return std::exchange(refused, true) ? real(size) : nullptr;
}

void putInPlace(Allocate function)
{
    for (void** const slot : testing_support::importSlots(testing_support::libraryModule, "malloc")) {
        real = reinterpret_cast<Allocate>(*slot);
        *slot = reinterpret_cast<void*>(function);
    }
}

} // namespace

RefusedMemory::RefusedMemory()
{
    refused = false;
    putInPlace(refuseOnce);
}

RefusedMemory::~RefusedMemory()
{
    putInPlace(real);
}
