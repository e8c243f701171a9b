#include "text/text.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

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

/// What changes the order in which a terminal draws, or is not drawn at all.
bool isInvisible(char32_t point)
{
    return (point >= 0x200B && point <= 0x200F) || (point >= 0x2028 && point <= 0x202E) ||
           (point >= 0x2060 && point <= 0x206F) || point == 0x061C || point == 0xFEFF;
}

int comparedIgnoringCase(TextView a, TextView b)
{
    return CompareStringOrdinal(rkuinfo::Argument(a), static_cast<int>(a.size()), rkuinfo::Argument(b),
                                static_cast<int>(b.size()), TRUE);
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
        if (isControl || isInvisible(point) || isSurrogate(point)) {
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

bool equalIgnoringCase(TextView a, TextView b)
{
    return comparedIgnoringCase(a, b) == CSTR_EQUAL;
}

bool LessIgnoringCase::operator()(TextView a, TextView b) const
{
    return comparedIgnoringCase(a, b) == CSTR_LESS_THAN;
}

bool containsIgnoringCase(TextView text, TextView part)
{
    for (; text.size() >= part.size(); text.remove_prefix(1)) {
        if (equalIgnoringCase(text.substr(0, part.size()), part)) {
            return true;
        }
        if (text.empty()) {
            break;
        }
    }
    return false;
}

std::string nearest(std::string_view word, const std::vector<std::string>& words)
{
    const auto distance = [](std::string_view a, std::string_view b) {
        std::vector<std::size_t> row(b.size() + 1);
        std::iota(row.begin(), row.end(), std::size_t{0});
        for (std::size_t i = 0; i < a.size(); ++i) {
            std::size_t diagonal = std::exchange(row[0], i + 1);
            for (std::size_t j = 0; j < b.size(); ++j) {
                const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
                diagonal = row[j + 1];
                row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
            }
        }
        return row.back();
    };
    constexpr std::size_t tooFar = 6; // three letters, of which the first counts half more
    std::string found;
    std::size_t least = std::min(tooFar, 2 * word.size());
    for (const std::string& candidate : words) {
        const std::size_t first = word.substr(0, 1) == std::string_view(candidate).substr(0, 1) ? 0 : 1;
        const std::size_t steps = 2 * distance(word, candidate) + first;
        if (steps < least) {
            least = steps;
            found = candidate;
        }
    }
    return found;
}
