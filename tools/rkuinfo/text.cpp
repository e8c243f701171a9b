#include "text.h"

#include <windows.h>

#include <array>

namespace {

constexpr bool isSurrogate(char32_t point)
{
    return point >= 0xD800 && point < 0xE000;
}

struct Block
{
    char32_t first;
    char32_t last;
};

/// What terminals draw two columns wide.
constexpr std::array wideBlocks = {Block{0x1100, 0x115F},  Block{0x2E80, 0xA4CF},   Block{0xAC00, 0xD7A3},
                                   Block{0xF900, 0xFAFF},  Block{0xFE30, 0xFE6F},   Block{0xFF00, 0xFF60},
                                   Block{0xFFE0, 0xFFE6},  Block{0x1F300, 0x1F64F}, Block{0x1F900, 0x1F9FF},
                                   Block{0x20000, 0x3FFFD}};

std::size_t width(char32_t point)
{
    for (const Block& block : wideBlocks) {
        if (point >= block.first && point <= block.last) {
            return 2;
        }
    }
    return point >= 0x300 && point < 0x370 ? 0 : 1; // combining marks
}

} // namespace

Text joinedKey(const Text& key, const Text& name)
{
    Text path = key;
    if (!path.empty()) {
        path += utf16("\\");
    }
    return path += name;
}

bool isValid(TextView text)
{
    while (!text.empty()) {
        const char32_t point = rkuinfo::takeCodePoint(text);
        if (isSurrogate(point)) {
            return false;
        }
    }
    return true;
}

std::string hexDigits(std::uint32_t number, int count)
{
    std::string digits;
    while (--count >= 0) {
        digits += "0123456789abcdef"[(number >> (4 * count)) & 0xF];
    }
    return digits;
}

std::string shown(TextView text)
{
    std::string out;
    while (!text.empty()) {
        const char32_t point = rkuinfo::takeCodePoint(text);
        const bool isControl = point < 0x20 || (point >= 0x7F && point < 0xA0);
        if (isControl || isSurrogate(point)) {
            out += "\\u" + hexDigits(point, 4);
        } else {
            rkuinfo::appendCodePoint(out, point);
        }
    }
    return out;
}

std::size_t displayWidth(std::string_view bytes)
{
    std::size_t columns = 0;
    while (!bytes.empty()) {
        columns += width(rkuinfo::takeCodePoint(bytes));
    }
    return columns;
}

bool equalIgnoringCase(const Text& a, const Text& b)
{
    return CompareStringOrdinal(rkuinfo::Argument(a), -1, rkuinfo::Argument(b), -1, TRUE) == CSTR_EQUAL;
}
