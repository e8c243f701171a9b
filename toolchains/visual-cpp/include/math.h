// Replaces the macros of Wine's math.h with C++ overloads, as in Visual C++.
#pragma once

#include_next <math.h>

#ifdef __cplusplus
#undef fpclassify
#undef signbit
#undef isinf
#undef isnan
#undef isnormal
#undef isfinite
#undef isgreater
#undef isgreaterequal
#undef isless
#undef islessequal
#undef islessgreater
#undef isunordered

extern "C++" {
template <class T>
inline bool isinf(T x) noexcept
{
    return __builtin_isinf(x);
}
template <class T>
inline bool isnan(T x) noexcept
{
    return __builtin_isnan(x);
}
template <class T>
inline bool isnormal(T x) noexcept
{
    return __builtin_isnormal(x);
}
template <class T>
inline bool isfinite(T x) noexcept
{
    return __builtin_isfinite(x);
}
template <class A, class B>
inline bool isgreater(A a, B b) noexcept
{
    return __builtin_isgreater(a, b);
}
template <class A, class B>
inline bool isgreaterequal(A a, B b) noexcept
{
    return __builtin_isgreaterequal(a, b);
}
template <class A, class B>
inline bool isless(A a, B b) noexcept
{
    return __builtin_isless(a, b);
}
template <class A, class B>
inline bool islessequal(A a, B b) noexcept
{
    return __builtin_islessequal(a, b);
}
template <class A, class B>
inline bool islessgreater(A a, B b) noexcept
{
    return __builtin_islessgreater(a, b);
}
template <class A, class B>
inline bool isunordered(A a, B b) noexcept
{
    return __builtin_isunordered(a, b);
}
}
#endif
