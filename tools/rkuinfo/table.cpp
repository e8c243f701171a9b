#include "table.h"

#include "system.h"
#include "text.h"

#include <fmt/color.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr std::size_t indent = 2;
constexpr std::size_t gap = 2;
constexpr std::size_t narrowest = 20; // what is narrower is not folded

fmt::text_style drawn(Style style)
{
    switch (style) {
    case Style::plain:
        break;
    case Style::heading:
        return fmt::emphasis::bold;
    case Style::good:
        return fmt::fg(fmt::terminal_color::green);
    case Style::bad:
        return fmt::fg(fmt::terminal_color::red);
    case Style::name:
        return fmt::fg(fmt::terminal_color::cyan);
    case Style::quiet:
        return fmt::fg(fmt::terminal_color::bright_black);
    }
    return {};
}

std::string styled(const Layout& layout, const std::string& text, Style style)
{
    return layout.coloured && !text.empty() ? fmt::format(drawn(style), "{}", text) : text;
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

std::vector<std::size_t> columnWidths(const std::vector<std::vector<Cell>>& rows)
{
    std::vector<std::size_t> widths;
    for (const std::vector<Cell>& row : rows) {
        for (std::size_t i = 0; row.size() > 1 && i < row.size(); ++i) {
            widths.resize(std::max(widths.size(), i + 1));
            widths[i] = std::max(widths[i], displayWidth(row[i].text));
        }
    }
    return widths;
}

void printAligned(const std::vector<Cell>& row, const std::vector<std::size_t>& widths, const Layout& layout)
{
    std::size_t start = indent;
    std::string line = spaces(indent);
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
        line += styled(layout, row[i].text, row[i].style);
        line += spaces(widths[i] - displayWidth(row[i].text) + gap);
        start += widths[i] + gap;
    }
    const std::size_t room = *layout.columns > start + narrowest ? *layout.columns - start : SIZE_MAX;
    std::string rest = row.back().text;
    if (rest.empty()) {
        line.erase(line.find_last_not_of(' ') + 1);
    }
    do {
        print(line + styled(layout, takeLine(rest, room), row.back().style));
        line = spaces(start);
    } while (!rest.empty());
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

Layout layout(const Session& session)
{
    const std::optional<std::size_t> terminal = terminalColumns();
    const char* const noColour = std::getenv("NO_COLOR");
    return {session.columns > 0 ? std::optional(session.columns) : terminal,
            terminal && (noColour == nullptr || *noColour == 0)};
}

void Table::print(const Layout& layout) const
{
    const std::vector<std::size_t> widths = columnWidths(m_rows);
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
