// Text output: the library speaks UTF-16, the launcher's output is UTF-8.
#pragma once

#include <RkUInfo.h>

#include <string>
#include <string_view>

/// Makes standard output pass every byte on unchanged.
void prepareOutput();

/// The UTF-8 form of a terminated UTF-16 text; a lone surrogate becomes U+FFFD, null the empty text.
std::string utf8(const wchar_t* text);

/// A value's type and data, such as "int 42" or "binary 00ff".
std::string describe(const VelaVariant& value);

/// One line "name: value"; an empty value shows as "(none)".
void printLine(std::string_view name, std::string_view value);
void printLine(std::string_view name, const wchar_t* value);
void printLine(std::string_view name, long value);
