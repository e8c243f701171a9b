// The heap operators.
#include <malloc.h>
#include <stdlib.h>

#include <new>

extern "C" int __cdecl _callnewh(size_t size);

void* __cdecl operator new(size_t size)
{
    for (;;) {
        if (void* const block = malloc(size != 0 ? size : 1)) {
            return block;
        }
        if (_callnewh(size) == 0) {
            throw std::bad_alloc();
        }
    }
}

void* __cdecl operator new(size_t size, const std::nothrow_t&) noexcept
{
    try {
        return operator new(size);
    } catch (...) {
        return nullptr;
    }
}

void* __cdecl operator new(size_t size, std::align_val_t alignment)
{
    if (void* const block = _aligned_malloc(size, static_cast<size_t>(alignment))) {
        return block;
    }
    throw std::bad_alloc();
}

void* __cdecl operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return _aligned_malloc(size, static_cast<size_t>(alignment));
}

void* __cdecl operator new[](size_t size)
{
    return operator new(size);
}

void* __cdecl operator new[](size_t size, const std::nothrow_t& nothrow) noexcept
{
    return operator new(size, nothrow);
}

void __cdecl operator delete(void* block) noexcept
{
    free(block);
}

void __cdecl operator delete(void* block, const std::nothrow_t&) noexcept
{
    free(block);
}

void __cdecl operator delete(void* block, size_t) noexcept
{
    free(block);
}

void __cdecl operator delete(void* block, std::align_val_t) noexcept
{
    _aligned_free(block);
}

void __cdecl operator delete(void* block, size_t, std::align_val_t) noexcept
{
    _aligned_free(block);
}

void __cdecl operator delete[](void* block) noexcept
{
    free(block);
}

void __cdecl operator delete[](void* block, const std::nothrow_t&) noexcept
{
    free(block);
}

void __cdecl operator delete[](void* block, size_t) noexcept
{
    free(block);
}
