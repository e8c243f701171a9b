// The current user's registry, for what the library tells only once it has started.
#pragma once

#include "text.h"

#include <cstddef>
#include <string>

bool userKeyExists(const std::string& key);

/// A value as start-up reads it: the text of a REG_SZ that has no more bytes, terminator counted, and else
/// nothing.
Text readUserText(const std::string& key, const wchar_t* name, std::size_t maxBytes);
