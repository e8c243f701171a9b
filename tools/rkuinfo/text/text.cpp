#include "text/text.h"

#include "model/system.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

const wchar_t* wide(TextView text)
{
    return reinterpret_cast<const wchar_t*>(text.data()); // wchar_t has 16 bits on every target
}

template <std::size_t Count>
bool isIn(const char32_t (&blocks)[Count][2], char32_t point)
{
    return std::ranges::any_of(
        blocks, [point](const char32_t* block) { return point >= block[0] && point <= block[1]; });
}

/// C0 and C1 control characters, lone surrogates, invisible characters, and characters that change the
/// direction of text.
constexpr char32_t hiddenBlocks[][2] = {{0, 0x1F},        {0x7F, 0x9F},     {0x061C, 0x061C},
                                        {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},
                                        {0xD800, 0xDFFF}, {0xFEFF, 0xFEFF}};

/// Characters that terminals draw two columns wide.
constexpr char32_t wideBlocks[][2] = {
    {0x1100, 0x115F}, {0x2E80, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
    {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

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
    char32_t point = 0;
    while (!text.empty() && (point < 0xD800 || point > 0xDFFF)) {
        point = rkuinfo::detail::takeCodePoint(text);
    }
    return point < 0xD800 || point > 0xDFFF;
}

std::string hexDigits(std::uint32_t number, int count)
{
    std::string digits;
    while (--count >= 0) {
        digits += "0123456789abcdef"[(number >> (4 * count)) & 0xF];
    }
    return digits;
}

std::string shown(std::string_view text, char32_t kept)
{
    std::string out;
    while (!text.empty()) {
        const char32_t point = rkuinfo::detail::takeCodePoint(text);
        if (isIn(hiddenBlocks, point) && (point != kept || kept == 0)) {
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

int compareIgnoringCase(TextView a, TextView b)
{
    return CompareStringOrdinal(wide(a), static_cast<int>(a.size()), wide(b), static_cast<int>(b.size()),
                                TRUE) -
           CSTR_EQUAL;
}

bool containsIgnoringCase(TextView text, TextView part)
{
    bool isFound = false;
    for (std::size_t i = 0; !isFound && i + part.size() <= text.size(); ++i) {
        isFound = equalIgnoringCase(text.substr(i, part.size()), part);
    }
    return isFound;
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

void showProgress(const char* what, std::size_t done)
{
    using Clock = std::chrono::steady_clock;
    static const bool isTerminal = errorsGoToTerminal();
    static Clock::time_point next;
    if (isTerminal && Clock::now() >= next) {
        next = Clock::now() + std::chrono::milliseconds(250);
        isProgressShown = true;
        std::fprintf(stderr, "\r%s %zu", what, done);
    }
}

void finishProgress()
{
    std::fputs(isProgressShown ? "\r\x1b[K" : "", stderr);
    isProgressShown = false;
}

// ---- Tables

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 20; // a last column of this width or less is not wrapped

std::size_t width(char32_t point)
{
    const bool isCombining = point >= 0x300 && point < 0x370;
    return isIn(wideBlocks, point) ? 2 : isCombining ? 0 : 1;
}

/// Returns the number of terminal columns that UTF-8 text occupies.
std::size_t displayWidth(std::string_view bytes)
{
    std::size_t columns = 0;
    while (!bytes.empty()) {
        columns += width(rkuinfo::detail::takeCodePoint(bytes));
    }
    return columns;
}

std::string styled(const Layout& layout, std::string_view text, Style style)
{
    return layout.coloured && !text.empty() && style != Style::plain
               ? "\x1b[" + std::to_string(static_cast<int>(style)) + 'm' + std::string(text) + "\x1b[0m"
               : std::string(text);
}

/// Removes the first line from the text and returns it. If the text is wider than `room` columns, the
/// line ends after the last separator that fits; if none fits, after the last character that fits.
std::string_view takeLine(std::string_view& text, std::size_t room)
{
    std::size_t end = 0;
    std::size_t lastSeparator = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const bool isSeparator = rest[0] == '\\' || rest[0] == ' ';
        const std::size_t columns = width(rkuinfo::detail::takeCodePoint(rest));
        if (columns > room) {
            break;
        }
        room -= columns;
        end = text.size() - rest.size();
        lastSeparator = isSeparator ? end : lastSeparator;
    }
    const std::size_t taken = end == text.size() || lastSeparator == 0 ? end : lastSeparator;
    const std::string_view line = text.substr(0, taken);
    text.remove_prefix(taken);
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::vector<std::size_t> columnWidths(const Table& table)
{
    std::vector<std::size_t> widths;
    for (const std::vector<Cell>& row : table) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i + 1 < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i].text));
        }
    }
    return widths;
}

void printAligned(const std::vector<Cell>& row, const std::vector<std::size_t>& widths, const Layout& layout)
{
    std::string line(gap, ' ');
    std::size_t start = gap;
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
        line += styled(layout, row[i].text, row[i].style) +
                std::string(widths[i] - displayWidth(row[i].text) + gap, ' ');
        start += widths[i] + gap;
    }
    const std::size_t room = *layout.columns > start + narrowest ? *layout.columns - start : SIZE_MAX;
    std::string_view rest = row.back().text;
    do {
        line += styled(layout, takeLine(rest, room), row.back().style);
        print(std::string_view(line).substr(0, line.find_last_not_of(' ') + 1));
        line.assign(start, ' ');
    } while (!rest.empty());
}

void printSeparated(const std::vector<Cell>& row)
{
    std::string line = row[0].text;
    for (std::size_t i = 1; i < row.size(); ++i) {
        line += '\t' + row[i].text;
    }
    print(line);
}

} // namespace

void printTable(const Table& table, const Layout& layout)
{
    const std::vector<std::size_t> widths = columnWidths(table);
    for (const std::vector<Cell>& row : table) {
        if (row.size() == 1 && layout.columns) {
            print(styled(layout, row[0].text, row[0].style));
        } else if (row.size() > 1) {
            layout.columns ? printAligned(row, widths, layout) : printSeparated(row);
        }
    }
}
