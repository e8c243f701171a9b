// UTF-16 strings inside winhost: the string type, the conversion to upper case, and the conversion to and
// from the host's UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace winhost {

// std::char_traits<wchar_t> calls functions of the C library, which expect a 32-bit wchar_t.
struct UnitTraits : __gnu_cxx::char_traits<wchar_t>
{
};
using Text = std::basic_string<wchar_t, UnitTraits>;
using TextView = std::basic_string_view<wchar_t, UnitTraits>;

/// Returns a view of a null-terminated string, or an empty view for a null pointer.
inline TextView viewOf(const wchar_t* text)
{
    return text != nullptr ? TextView(text) : TextView();
}

/// Converts a UTF-16 code unit to upper case, using the same table as ntdll's RtlUpcaseUnicodeChar.
wchar_t upcase(wchar_t unit);

/// Compares code units, converted to upper case if ignoreCase is true. Returns a number less than, equal to
/// or greater than 0.
int compare(TextView a, TextView b, bool ignoreCase);

inline bool equalIgnoringCase(TextView a, TextView b)
{
    return a.size() == b.size() && compare(a, b, true) == 0;
}

/// Converts UTF-16 to UTF-8; a lone surrogate becomes three bytes.
std::string toUtf8(TextView text);

/// Converts UTF-8 to UTF-16 and restores lone surrogates. A byte outside a valid sequence is read as Latin-1.
Text fromUtf8(std::string_view bytes);

/// Copies as much of a string as fits into `size` code units, including a terminator. Returns the number of
/// units before the terminator. Writes nothing if size is 0.
std::size_t copyText(TextView text, wchar_t* out, std::size_t size);

} // namespace winhost
