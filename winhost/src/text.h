// UTF-16 text inside winhost: its string type, the system's case rule, and UTF-8 for the host's side.
#pragma once

#include <string>
#include <string_view>

namespace winhost {

// The generic traits: those of std::wstring call the C library's wide functions, which assume the host's own
// wchar_t.
struct UnitTraits : __gnu_cxx::char_traits<wchar_t>
{
};
using Text = std::basic_string<wchar_t, UnitTraits>;
using TextView = std::basic_string_view<wchar_t, UnitTraits>;

/// One UTF-16 unit in upper case, as the system's ordinal comparison and its name tables fold it.
wchar_t upcase(wchar_t unit);

/// Less than, equal to or greater than 0: the order of the units, of their upper case when case is ignored.
int compare(TextView a, TextView b, bool ignoreCase);

inline bool equalIgnoringCase(TextView a, TextView b)
{
    return a.size() == b.size() && compare(a, b, true) == 0;
}

/// UTF-8 of UTF-16; a lone surrogate takes the three bytes that its number would.
std::string toUtf8(TextView text);

/// UTF-16 of UTF-8, lone surrogates included. A byte that is no part of a valid sequence is taken as Latin-1.
Text fromUtf8(std::string_view bytes);

/// Copies the text and a terminator into size units, cut where it does not fit; gives what was copied without
/// the terminator. Writes nothing when size is 0.
std::size_t copyText(TextView text, wchar_t* out, std::size_t size);

} // namespace winhost
