#include "print.h"

#include "names.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <iostream>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace {

constexpr bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

/// Takes one code point off the text, which is not at its end.
char32_t takeCodePoint(const wchar_t*& text)
{
    const char32_t first = *text++;
    if (isHighSurrogate(first) && isLowSurrogate(*text)) {
        const char32_t second = *text++;
        return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
    return isHighSurrogate(first) || isLowSurrogate(first) ? 0xFFFD : first;
}

void appendUtf8(std::string& out, char32_t codePoint)
{
    const auto append = [&out](char32_t byte) { out += static_cast<char>(byte); };
    const auto appendRest = [&](unsigned shift) { append(0x80 | ((codePoint >> shift) & 0x3F)); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | (codePoint >> 6));
        appendRest(0);
    } else if (codePoint < 0x10000) {
        append(0xE0 | (codePoint >> 12));
        appendRest(6);
        appendRest(0);
    } else {
        append(0xF0 | (codePoint >> 18));
        appendRest(12);
        appendRest(6);
        appendRest(0);
    }
}

/// The shortest text that reads back as the same number.
std::string text(double number)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

std::string hexBytes(const VelaVariant& value)
{
    constexpr const char* digits = "0123456789abcdef";
    std::string out;
    if (const auto* byte = static_cast<const std::uint8_t*>(value.getBinary())) {
        for (std::int32_t left = value.blockSize() - 4; left > 0; --left, ++byte) {
            out += digits[*byte >> 4];
            out += digits[*byte & 15];
        }
    }
    return out;
}

std::string data(const VelaVariant& value)
{
    switch (value.type()) {
    case VelaVariant::eNull:
        break;
    case VelaVariant::eInt:
        return std::to_string(value.getInt());
    case VelaVariant::eInt64:
        return std::to_string(value.getInt64());
    case VelaVariant::eDouble:
        return text(value.getDouble());
    case VelaVariant::eBinary:
        return hexBytes(value);
    case VelaVariant::eString:
        return utf8(value.getString());
    }
    return {};
}

} // namespace

void prepareOutput()
{
#if defined(_WIN32)
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

std::string utf8(const wchar_t* text)
{
    std::string out;
    while (text != nullptr && *text != 0) {
        appendUtf8(out, takeCodePoint(text));
    }
    return out;
}

std::string describe(const VelaVariant& value)
{
    return std::string(typeName(value.type())) + ' ' + data(value);
}

void printLine(std::string_view name, std::string_view value)
{
    std::cout << name << ": " << (value.empty() ? "(none)" : value) << '\n';
}

void printLine(std::string_view name, const wchar_t* value)
{
    printLine(name, utf8(value));
}

void printLine(std::string_view name, long value)
{
    printLine(name, std::to_string(value));
}
