// Text: the library speaks UTF-16, the command line and the output UTF-8.
#pragma once

#include <RkUInfo.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using rkuinfo::Text;
using rkuinfo::TextView;
using rkuinfo::utf16;
using rkuinfo::utf8;

/// The path of a key below another one.
Text joinedKey(const Text& key, const Text& name);

/// Whether the text is valid UTF-16: no surrogate stands alone.
bool isValid(TextView text);

/// So many hexadecimal digits, the last ones of the number.
std::string hexDigits(std::uint32_t number, int count);

/// For tables: control characters, marks of direction and lone surrogates become \uXXXX, which no terminal
/// obeys.
std::string shown(TextView text);

/// The columns that an UTF-8 text takes on a terminal.
std::size_t displayWidth(std::string_view bytes);

bool equalIgnoringCase(TextView a, TextView b);
struct LessIgnoringCase
{
    bool operator()(TextView a, TextView b) const;
};
bool containsIgnoringCase(TextView text, TextView part);

/// The word that was probably meant; empty when none is near.
std::string nearest(std::string_view word, const std::vector<std::string>& words);
