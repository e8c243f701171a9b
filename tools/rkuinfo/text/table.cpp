#include "text/table.h"

#include "text/print.h"
#include "text/text.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 20; // what is narrower is not folded

/// The number of the terminal's sequence ESC [ number m.
const char* drawn(Style style)
{
    switch (style) {
    case Style::plain:
        break;
    case Style::heading:
        return "1";
    case Style::good:
        return "32";
    case Style::bad:
        return "31";
    case Style::name:
        return "36";
    case Style::quiet:
        return "90";
    }
    return "0";
}

std::string styled(const Layout& layout, const std::string& text, Style style)
{
    return layout.coloured && !text.empty() && style != Style::plain
               ? std::string("\x1b[") + drawn(style) + 'm' + text + "\x1b[0m"
               : text;
}

std::string spaces(std::size_t count)
{
    return std::string(count, ' ');
}

/// Takes off the first line of a text that is to fit a width: up to its last separator, else all that fits.
std::string takeLine(std::string& text, std::size_t width)
{
    std::size_t end = 0;
    std::size_t separator = 0;
    for (std::size_t next = 0; next < text.size();) {
        const bool isSeparator = text[next] == '\\' || text[next] == ' ';
        do {
            ++next;
        } while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0) == 0x80);
        if (displayWidth(std::string_view(text).substr(0, next)) > width) {
            break;
        }
        end = next;
        separator = isSeparator ? next : separator;
    }
    const std::size_t taken = end == text.size() || separator == 0 ? end : separator;
    std::string line = text.substr(0, taken);
    text.erase(0, taken);
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::vector<std::size_t> columnWidths(const std::vector<std::vector<Cell>>& rows, std::size_t widest)
{
    std::vector<std::size_t> widths;
    for (const std::vector<Cell>& row : rows) {
        for (std::size_t i = 0; row.size() > 1 && i < row.size(); ++i) {
            widths.resize(std::max(widths.size(), i + 1));
            const std::size_t width = displayWidth(row[i].text);
            widths[i] = width > widest ? widths[i] : std::max(widths[i], width);
        }
    }
    return widths;
}

/// The lines of one row, from left to right.
class Row
{
public:
    explicit Row(const Layout& layout) : m_layout(layout) {}

    void add(const Cell& cell, std::size_t width)
    {
        const std::size_t taken = displayWidth(cell.text);
        if (taken <= width) {
            m_line += styled(m_layout, cell.text, cell.style) + spaces(width - taken + gap);
            m_start += width + gap;
            return;
        }
        addFolded(cell);
        m_start += width + gap;
        m_line = spaces(m_start);
    }

    /// Down to the last line of a cell.
    void addFolded(const Cell& cell)
    {
        const std::size_t columns = *m_layout.columns;
        const std::size_t room = columns > m_start + narrowest ? columns - m_start : SIZE_MAX;
        std::string rest = cell.text;
        do {
            const std::string line = takeLine(rest, room);
            if (line.empty()) {
                m_line.erase(m_line.find_last_not_of(' ') + 1);
            }
            print(m_line + styled(m_layout, line, cell.style));
            m_line = spaces(m_start);
        } while (!rest.empty());
    }

private:
    const Layout& m_layout;
    std::size_t m_start = indent;
    std::string m_line = spaces(indent);
};

void printAligned(const std::vector<Cell>& cells, const std::vector<std::size_t>& widths,
                  const Layout& layout)
{
    Row row(layout);
    for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
        row.add(cells[i], widths[i]);
    }
    row.addFolded(cells.back());
}

void printPlain(const std::vector<Cell>& row)
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
        if (!layout.columns) {
            if (row.size() > 1) {
                printPlain(row);
            }
        } else if (row.size() > 1) {
            printAligned(row, widths, layout);
        } else {
            ::print(styled(layout, row[0].text, row[0].style));
        }
    }
}

std::string folded(std::string text, std::size_t indentation, std::size_t columns)
{
    std::string lines;
    const std::size_t room = columns > indentation + narrowest ? columns - indentation : SIZE_MAX;
    do {
        lines += spaces(indentation) + takeLine(text, room) + '\n';
    } while (!text.empty());
    return lines;
}
