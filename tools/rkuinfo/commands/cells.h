// How values stand in tables.
#pragma once

#include "model/value.h"
#include "text/table.h"

#include <string>
#include <vector>

std::string shownName(const Value& value);
/// A row of what names a value, its type and its data.
std::vector<Cell> valueRow(std::vector<Cell> names, const Value& value);
std::vector<Cell> keyRow(std::vector<Cell> names);
