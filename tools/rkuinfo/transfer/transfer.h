// Files that contain subtrees: access to files, JSON and the format of the Windows registry editor.
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
/// Reads a regular file of at most 1 MiB. Returns nothing for any other file, and never blocks on a pipe.
std::optional<std::string> readSmallFile(const std::string& file);
/// Writes a new file with the same permissions and renames it, so that the file is either completely replaced
/// or unchanged. Writes directly to anything but a regular file, such as a device.
void writeFile(const std::string& file, std::string_view bytes);

// The JSON format represents every value; the man page describes it. A string that is not valid UTF-16 is
// {"utf16": "bytes in hexadecimal"}, because JSON cannot contain a lone surrogate.
using Json = nlohmann::ordered_json;

Json toJson(TextView text);
/// Returns {"type", "value"}.
Json toJson(const Value& value);
/// Returns {"name", "type", "value"}.
Json toNamedJson(const Value& value);
/// Appends {"values": [...], "keys": [{"name", "values", "keys"}...]} to the members of a header.
Json toJson(const Tree& tree, Json header = Json::object());
/// Returns the text of a document, in which characters that a terminal may interpret are escaped.
std::string documentText(const Json& json);
/// Returns the changes that a file makes to the key `root`. Throws a Failure that names the key in the file
/// and the reason, also for names that no application can use.
std::vector<Edit> fromJsonFile(const std::string& file, const std::string& bytes, const Text& root);

// Files of the Windows registry editor can be read but not written.
bool isRegFile(const std::string& bytes);
/// Returns the changes that a registry editor file makes to the key `root`. Every key in the file must be
/// `root` or below it. Throws a Failure that names the line and the reason.
std::vector<Edit> fromRegFile(const std::string& file, const std::string& bytes, const Text& root);
