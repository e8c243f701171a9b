// Defines the few compiled functions of libc++ that the examples and other clients of RkUInfo.hpp need.
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

_LIBCPP_BEGIN_NAMESPACE_STD

[[noreturn]] void __libcpp_verbose_abort(const char*, ...)
{
    abort();
}

template class basic_string<char>;
template class basic_string<wchar_t>;

error_category::~error_category() noexcept {}

error_condition error_category::default_error_condition(int value) const noexcept
{
    return {value, *this};
}

bool error_category::equivalent(int code, const error_condition& condition) const noexcept
{
    return default_error_condition(code) == condition;
}

bool error_category::equivalent(const error_code& code, int condition) const noexcept
{
    return *this == code.category() && code.value() == condition;
}

const error_category& system_category() noexcept
{
    struct Category final : error_category
    {
        const char* name() const noexcept override { return "system"; }
        string message(int) const override { return "system error"; }
    };
    static const Category category;
    return category;
}

template string operator+(const char*, const string&);

string to_string(long value)
{
    char digits[16];
    return _ltoa(value, digits, 10);
}

__shared_count::~__shared_count() {}

__shared_weak_count::~__shared_weak_count() {}

const void* __shared_weak_count::__get_deleter(const type_info&) const noexcept
{
    return nullptr;
}

void __shared_weak_count::__release_weak() noexcept
{
    if (__libcpp_atomic_refcount_decrement(__shared_weak_owners_) == -1) {
        __on_zero_shared_weak();
    }
}

_LIBCPP_END_NAMESPACE_STD

namespace std {

const nothrow_t nothrow{};

runtime_error::runtime_error(const string& text) : exception(text.c_str()) {}

} // namespace std
