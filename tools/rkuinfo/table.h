// Tables: aligned and coloured for people, with a tab between the cells for programs.
#pragma once

#include "session.h"

#include <fmt/color.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct Layout
{
    std::optional<std::size_t> columns; ///< nothing: not aligned
    bool coloured = false;
};

Layout layout(const Session& session);

constexpr auto headingStyle = fmt::emphasis::bold;
constexpr auto goodStyle = fmt::fg(fmt::terminal_color::green);
constexpr auto badStyle = fmt::fg(fmt::terminal_color::red);
constexpr auto nameStyle = fmt::fg(fmt::terminal_color::cyan);
constexpr auto quietStyle = fmt::fg(fmt::terminal_color::bright_black);

std::string styled(const Layout& layout, std::string_view text, const fmt::text_style& style);

struct Cell
{
    std::string text;
    fmt::text_style style = {};
};

class Table
{
public:
    void addRow(std::vector<Cell> cells) { m_rows.push_back(std::move(cells)); }
    /// A line above the rows that follow, which only people get.
    void addHeading(std::string text) { m_rows.push_back({{std::move(text), headingStyle}}); }

    /// Each column is as wide as its widest cell; the last one is folded at the right edge.
    void print(const Layout& layout) const;

private:
    std::vector<std::vector<Cell>> m_rows; // one of a single cell is a heading
};
