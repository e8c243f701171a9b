// Files that subtrees are exchanged in: their bytes, JSON and the Windows registry editor's format.
#pragma once

#include "model/registry.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Whether a file is a standard stream: "-", or no name.
bool isStream(const std::string& file);
std::string readFile(const std::string& file);
/// Reads a regular file of at most 1 MiB; nothing for what is not one, and without waiting for a pipe.
std::optional<std::string> readSmallFile(const std::string& file);
/// Writes a new file beside it and puts that in its place with the same permissions, so that it exists whole
/// or as it was; writes straight into what is not a regular file, such as a device.
void writeFile(const std::string& file, std::string_view bytes);

// JSON is without loss; the man page describes it. A text that is not valid UTF-16 is {"utf16": [numbers]},
// since JSON has no other way to write a lone surrogate.
using Json = nlohmann::ordered_json;

Json toJson(TextView text);
/// {"type", "value"}.
Json toJson(const Value& value);
/// {"name", "type", "value"}.
Json toNamedJson(const Value& value);
/// Appends {"values": [...], "keys": [{"name", "values", "keys"}...]} to the members of a header.
Json toJson(const Tree& tree, Json header = Json::object());
/// The text of a document, without a character that a terminal would obey.
std::string documentText(const Json& json);
/// Reads what a file does to a key of that path below HKEY_CURRENT_USER. Throws with the key in the file and
/// the reason, also for what no application could use.
std::vector<Edit> fromJsonFile(const std::string& file, const std::string& bytes, const Text& root);

// Files of the Windows registry editor are only read: on Windows it writes them itself.
bool isRegFile(const std::string& bytes);
/// The same; every key in the file has to be at or below root. Throws with the line.
std::vector<Edit> fromRegFile(const std::string& file, const std::string& bytes, const Text& root);
