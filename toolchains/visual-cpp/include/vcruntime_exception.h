// std::exception and its derived classes, with the layout that vcruntime140.dll uses.
#pragma once

#include <vcruntime.h>

extern "C" {
struct __std_exception_data
{
    const char* _What;
    bool _DoFree;
};
void __cdecl __std_exception_copy(const __std_exception_data* from, __std_exception_data* to);
void __cdecl __std_exception_destroy(__std_exception_data* data);
__declspec(noreturn) void __cdecl terminate();
}

namespace std {

class exception
{
public:
    exception() noexcept : _Data() {}
    explicit exception(const char* what) noexcept : _Data()
    {
        const __std_exception_data data = {what, true};
        __std_exception_copy(&data, &_Data);
    }
    exception(const char* what, int) noexcept : _Data() { _Data._What = what; }
    exception(const exception& other) noexcept : _Data() { __std_exception_copy(&other._Data, &_Data); }
    exception& operator=(const exception& other) noexcept
    {
        if (this != &other) {
            __std_exception_destroy(&_Data);
            __std_exception_copy(&other._Data, &_Data);
        }
        return *this;
    }
    virtual ~exception() noexcept { __std_exception_destroy(&_Data); }
    virtual const char* what() const { return _Data._What ? _Data._What : "Unknown exception"; }

private:
    __std_exception_data _Data;
};

class bad_exception : public exception
{
public:
    bad_exception() noexcept : exception("bad exception", 1) {}
};

class bad_alloc : public exception
{
public:
    bad_alloc() noexcept : exception("bad allocation", 1) {}

private:
    friend class bad_array_new_length;
    bad_alloc(const char* what) noexcept : exception(what, 1) {}
};

class bad_array_new_length : public bad_alloc
{
public:
    bad_array_new_length() noexcept : bad_alloc("bad array new length") {}
};

} // namespace std
