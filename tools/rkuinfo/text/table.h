// Tables: aligned and coloured for people, with a tab between the cells for programs.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

struct Layout
{
    std::optional<std::size_t> columns; ///< without a value, cells are separated by tabs
    bool coloured = false;
};

/// The number of the terminal's sequence ESC [ number m.
enum class Style
{
    plain = 0,
    heading = 1,
    bad = 31, ///< only for what is wrong
    good = 32,
    name = 36,
    quiet = 90, ///< also for what is merely absent
};

struct Cell
{
    std::string text;
    Style style = Style::plain;
};

class Table
{
public:
    void addRow(std::vector<Cell> cells) { m_rows.push_back(std::move(cells)); }
    /// A line above the rows that follow, which programs do not get.
    void addHeading(std::string text) { m_rows.push_back({{std::move(text), Style::heading}}); }
    bool isEmpty() const { return m_rows.empty(); }

    /// Each column is as wide as its widest cell, up to a third of the terminal; a row with a wider cell
    /// continues below it. The last column is folded at the right edge.
    void print(const Layout& layout) const;

private:
    std::vector<std::vector<Cell>> m_rows; // a row of a single cell is a heading
};
