#include "text/table.h"

#include "text/text.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 20; // a narrower column is not folded

std::string styled(const Layout& layout, std::string_view text, Style style)
{
    return layout.coloured && !text.empty() && style != Style::plain
               ? "\x1b[" + std::to_string(static_cast<int>(style)) + 'm' + std::string(text) + "\x1b[0m"
               : std::string(text);
}

/// Takes the first line that fits a width off a text: up to its last separator, else all that fits.
std::string_view takeLine(std::string_view& text, std::size_t width)
{
    std::size_t end = 0;
    std::size_t lastSeparator = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const bool isSeparator = rest[0] == '\\' || rest[0] == ' ';
        std::string_view character = rest;
        rkuinfo::detail::takeCodePoint(rest);
        character.remove_suffix(rest.size());
        const std::size_t columns = displayWidth(character);
        if (columns > width) {
            break;
        }
        width -= columns;
        end += character.size();
        lastSeparator = isSeparator ? end : lastSeparator;
    }
    const std::size_t taken = end == text.size() || lastSeparator == 0 ? end : lastSeparator;
    const std::string_view line = text.substr(0, taken);
    text.remove_prefix(taken);
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::vector<std::size_t> columnWidths(const std::vector<std::vector<Cell>>& rows, std::size_t widest)
{
    std::vector<std::size_t> widths;
    for (const std::vector<Cell>& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; row.size() > 1 && i < row.size(); ++i) {
            const std::size_t width = displayWidth(row[i].text);
            widths[i] = width > widest ? widths[i] : std::max(widths[i], width);
        }
    }
    return widths;
}

void printAligned(const std::vector<Cell>& row, const std::vector<std::size_t>& widths, const Layout& layout)
{
    std::size_t start = indent;
    std::string line(start, ' ');
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool isLast = i + 1 == row.size();
        const std::size_t width = displayWidth(row[i].text);
        if (!isLast && width <= widths[i]) {
            line += styled(layout, row[i].text, row[i].style) + std::string(widths[i] - width + gap, ' ');
            start += widths[i] + gap;
            continue;
        }
        const std::size_t room = *layout.columns > start + narrowest ? *layout.columns - start : SIZE_MAX;
        std::string_view rest = row[i].text;
        do {
            const std::string_view part = takeLine(rest, room);
            line += styled(layout, part, row[i].style);
            ::print(part.empty() ? line.substr(0, line.find_last_not_of(' ') + 1) : line);
            line.assign(start, ' ');
        } while (!rest.empty());
        start += widths[i] + gap;
        line.assign(start, ' ');
    }
}

void printSeparated(const std::vector<Cell>& row)
{
    std::string line = row[0].text;
    for (std::size_t i = 1; i < row.size(); ++i) {
        line += '\t' + row[i].text;
    }
    ::print(line);
}

} // namespace

void Table::print(const Layout& layout) const
{
    const std::vector<std::size_t> widths = columnWidths(m_rows, layout.columns.value_or(0) / 3);
    for (const std::vector<Cell>& row : m_rows) {
        if (row.size() == 1 && layout.columns) {
            ::print(styled(layout, row[0].text, row[0].style));
        } else if (row.size() > 1 && layout.columns) {
            printAligned(row, widths, layout);
        } else if (row.size() > 1) {
            printSeparated(row);
        }
    }
}
