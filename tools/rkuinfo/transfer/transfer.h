// Files that contain subtrees: their bytes, JSON and the Windows registry editor's format.
#pragma once

#include "model/registry.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Returns whether the name of a file stands for a standard stream: "-", or nothing.
bool isStream(const std::string& file);
std::string readFile(const std::string& file);
/// Reads a regular file of at most 1 MiB; returns nothing for anything else, and does not wait for a pipe.
std::optional<std::string> readSmallFile(const std::string& file);
/// Writes a new file with the same permissions and renames it, so that the file is either completely replaced
/// or unchanged. Writes directly to anything but a regular file, such as a device.
void writeFile(const std::string& file, std::string_view bytes);

// JSON contains everything; the man page describes it. A string that is not valid UTF-16 is {"utf16": "bytes
// in hexadecimal"}, because JSON cannot contain a lone surrogate.
using Json = nlohmann::ordered_json;

Json toJson(TextView text);
/// Returns {"type", "value"}.
Json toJson(const Value& value);
/// Returns {"name", "type", "value"}.
Json toNamedJson(const Value& value);
/// Appends {"values": [...], "keys": [{"name", "values", "keys"}...]} to the members of a header.
Json toJson(const Tree& tree, Json header = Json::object());
/// Returns the text of a document, without a character that a terminal would obey.
std::string documentText(const Json& json);
/// Reads the changes that a file makes to the key `root`. Throws with the key in the file and the reason,
/// also for names that no application could use.
std::vector<Edit> fromJsonFile(const std::string& file, const std::string& bytes, const Text& root);

// Files of the Windows registry editor are only read: the editor writes them.
bool isRegFile(const std::string& bytes);
/// Does the same. Every key in the file must be `root` or below it. Throws with the line and the reason.
std::vector<Edit> fromRegFile(const std::string& file, const std::string& bytes, const Text& root);
