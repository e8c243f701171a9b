// Files of the Windows registry editor: UTF-16 with its mark, "Windows Registry Editor Version 5.00".
#pragma once

#include "model/tree.h"

#include <string>

bool isRegFile(const std::string& bytes);

/// root is the path of the key that the node is, below HKEY_CURRENT_USER. Throws for a name of several lines.
std::string toRegFile(const Text& root, const Node& node);

/// What the file says of a key, which every other key in it must be below; throws with the line and the
/// reason.
Node fromRegFile(const std::string& file, const std::string& bytes, const Text& root);
