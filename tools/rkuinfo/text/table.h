// Tables: aligned and coloured for people, with a tab between the cells for programs.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

struct Layout
{
    std::optional<std::size_t> columns; ///< nothing: not aligned
    bool coloured = false;
};

enum class Style
{
    plain,
    heading,
    good,
    bad, ///< only for what is wrong
    name,
    quiet, ///< for what is merely absent, too
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
    /// A line above the rows that follow, which only people get.
    void addHeading(std::string text) { m_rows.push_back({{std::move(text), Style::heading}}); }

    /// Each column is as wide as its widest cell, up to a third of the terminal; a row with a wider one goes
    /// on below it. The last column is folded at the right edge.
    void print(const Layout& layout) const;

private:
    std::vector<std::vector<Cell>> m_rows; // one of a single cell is a heading
};

/// A text of several words in lines of a width, each behind an indentation.
std::string folded(std::string text, std::size_t indentation, std::size_t columns);
