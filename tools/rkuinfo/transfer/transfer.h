// Reads and writes subtrees as JSON files, and reads Windows registry editor files.
#pragma once

#include "model/registry.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Returns whether a file name stands for a standard stream: "-" or an empty name.
bool isStream(const std::string& file);
std::string readFile(const std::string& file);
/// Reads a regular file of at most 1 MiB. Returns nothing if the file is larger, unreadable, or not a regular
/// file.
std::optional<std::string> readSmallFile(const std::string& file);
/// Replaces a file completely or not at all: writes a new file with the same permissions and renames it. If
/// `file` is a device or another non-regular file, writes to it directly.
void writeFile(const std::string& file, std::string_view bytes);

// The JSON format, which the man page describes, can represent every value. A string that is not valid UTF-16
// is stored as {"utf16": "bytes in hexadecimal"}, because JSON cannot contain a lone surrogate.
using Json = nlohmann::ordered_json;

Json toJson(TextView text);
/// Returns {"type", "value"}.
Json toJson(const Value& value);
/// Returns {"name", "type", "value"}.
Json toNamedJson(const Value& value);
/// Returns `header` with two members appended: {"values": [...], "keys": [{"name", "values", "keys"}...]}.
Json toJson(const Tree& tree, Json header = Json::object());
/// Converts JSON to text. Escapes characters that a terminal may interpret.
std::string documentText(const Json& json);
/// Returns the changes that a file makes to the key `root`. If the file is invalid or contains a name that no
/// application can use, throws a Failure with the key and the reason.
std::vector<Edit> fromJsonFile(const std::string& file, const std::string& bytes, const Text& root);

// rkuinfo reads Windows registry editor files, but does not write them.
bool isRegFile(const std::string& bytes);
/// Returns the changes that a registry editor file makes to the key `root`. Every key in the file must be
/// `root` or below it. If the file is invalid, throws a Failure with the line and the reason.
std::vector<Edit> fromRegFile(const std::string& file, const std::string& bytes, const Text& root);
