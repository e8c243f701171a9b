// Tables: aligned and coloured for people, with a tab between the cells for programs.
#pragma once

#include "session.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

struct Layout
{
    std::optional<std::size_t> columns; ///< nothing: not aligned
    bool coloured = false;
};

Layout layout(const Session& session);

enum class Style
{
    plain,
    heading,
    good,
    bad,
    name,
    quiet,
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

    /// Each column is as wide as its widest cell; the last one is folded at the right edge.
    void print(const Layout& layout) const;

private:
    std::vector<std::vector<Cell>> m_rows; // one of a single cell is a heading
};
