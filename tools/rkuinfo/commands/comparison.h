// A file beside a key: what import and diff begin with.
#pragma once

#include "model/tree.h"

#include <string>
#include <vector>

/// What tells a key from a file of either format, see changes(). The whole file is checked first: throws for
/// whatever no application could use.
std::vector<Change> compare(const Text& path, const std::string& file, bool isWhole);
