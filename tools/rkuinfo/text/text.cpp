#include "text/text.h"

#include "model/system.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace {

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

/// Controls of both sets, lone surrogates, and what is invisible or changes the direction of text.
constexpr std::array hiddenBlocks = {Block{0, 0x1F},        Block{0x7F, 0x9F},     Block{0x061C, 0x061C},
                                     Block{0x200B, 0x200F}, Block{0x2028, 0x202E}, Block{0x2060, 0x206F},
                                     Block{0xD800, 0xDFFF}, Block{0xFEFF, 0xFEFF}};

template <std::size_t Size>
bool isIn(const std::array<Block, Size>& blocks, char32_t point)
{
    return std::ranges::any_of(
        blocks, [point](const Block& block) { return point >= block.first && point <= block.last; });
}

std::size_t width(char32_t point)
{
    const bool isCombining = point >= 0x300 && point < 0x370;
    return isIn(wideBlocks, point) ? 2 : isCombining ? 0 : 1;
}

const wchar_t* wide(TextView text)
{
    return reinterpret_cast<const wchar_t*>(text.data()); // of the same size on every target
}

bool isProgressShown = false;

} // namespace

Text joinedKey(TextView key, TextView name)
{
    Text path(key);
    if (!key.empty() && !name.empty()) {
        path += separator;
    }
    return path += name;
}

TextView parentKey(TextView path)
{
    const std::size_t end = path.rfind(separator);
    return path.substr(0, end == TextView::npos ? 0 : end);
}

TextView lastName(TextView path)
{
    return path.substr(path.rfind(separator) + 1);
}

bool isValid(TextView text)
{
    while (!text.empty()) {
        const char32_t point = rkuinfo::detail::takeCodePoint(text);
        if (point >= 0xD800 && point < 0xE000) {
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

std::string shown(std::string_view text, char kept)
{
    std::string out;
    while (!text.empty()) {
        const char32_t point = rkuinfo::detail::takeCodePoint(text);
        if (isIn(hiddenBlocks, point) && (kept == 0 || point != static_cast<unsigned char>(kept))) {
            out += "\\u" + hexDigits(point, 4);
        } else {
            rkuinfo::detail::appendCodePoint(out, point);
        }
    }
    return out;
}

std::string shown(TextView text)
{
    return shown(utf8(text));
}

std::size_t displayWidth(std::string_view bytes)
{
    std::size_t columns = 0;
    while (!bytes.empty()) {
        columns += width(rkuinfo::detail::takeCodePoint(bytes));
    }
    return columns;
}

int compareIgnoringCase(TextView a, TextView b)
{
    return CompareStringOrdinal(wide(a), static_cast<int>(a.size()), wide(b), static_cast<int>(b.size()),
                                TRUE) -
           CSTR_EQUAL;
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

void print(std::string_view line)
{
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

void printError(std::string_view sentence)
{
    finishProgress();
    std::fflush(stdout);
    std::fputs(("rkuinfo: " + shown(sentence) + '\n').c_str(), stderr);
}

void showProgress(const char* what, std::size_t done, std::size_t total)
{
    using Clock = std::chrono::steady_clock;
    static const bool isTerminal = errorsGoToTerminal();
    static Clock::time_point next;
    if (isTerminal && (done == total || Clock::now() >= next)) {
        next = Clock::now() + std::chrono::milliseconds(250);
        isProgressShown = true;
        std::fprintf(stderr, "\r%s %zu", what, done);
        if (total > 0) {
            std::fprintf(stderr, " of %zu", total);
        }
    }
}

void finishProgress()
{
    std::fputs(isProgressShown ? "\r\x1b[K" : "", stderr);
    isProgressShown = false;
}
