// Declares the heap operators, which runtime/heap.cpp defines.
#pragma once

#include <vcruntime_exception.h>

namespace std {

struct nothrow_t
{
    explicit nothrow_t() = default;
};
extern const nothrow_t nothrow;

enum class align_val_t : size_t
{
};

} // namespace std

void* __cdecl operator new(size_t size);
void* __cdecl operator new(size_t size, const std::nothrow_t&) noexcept;
void* __cdecl operator new(size_t size, std::align_val_t alignment);
void* __cdecl operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept;
void* __cdecl operator new[](size_t size);
void* __cdecl operator new[](size_t size, const std::nothrow_t&) noexcept;
void __cdecl operator delete(void* block) noexcept;
void __cdecl operator delete(void* block, const std::nothrow_t&) noexcept;
void __cdecl operator delete(void* block, size_t) noexcept;
void __cdecl operator delete(void* block, std::align_val_t) noexcept;
void __cdecl operator delete(void* block, size_t, std::align_val_t) noexcept;
void __cdecl operator delete[](void* block) noexcept;
void __cdecl operator delete[](void* block, const std::nothrow_t&) noexcept;
void __cdecl operator delete[](void* block, size_t) noexcept;

inline void* __cdecl operator new(size_t, void* where) noexcept
{
    return where;
}
inline void* __cdecl operator new[](size_t, void* where) noexcept
{
    return where;
}
inline void __cdecl operator delete(void*, void*) noexcept {}
inline void __cdecl operator delete[](void*, void*) noexcept {}
