// JSON: texts, values and subtrees without loss.
//
// A key is {"values": [{"name": N, "type": T, "value": V}...], "keys": [{"name": N, "values": ..., "keys":
// ...}...]}. The default value's name is empty, binary values are in hexadecimal. A value of a registry type
// that applications do not read has the type's number for T and its bytes for V. A text that is no valid
// UTF-16 is
// {"utf16": [numbers]}, since JSON has no other place for a lone surrogate.
#pragma once

#include "model/tree.h"
#include "model/value.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

using Json = nlohmann::ordered_json;

Json toJson(TextView text);
/// {"type", "value"}.
Json toJson(const Value& value);
/// {"name", "type", "value"}.
Json toNamedJson(const Value& value);
std::string toJsonFile(const Node& node);

/// Throws with the place in the file, as a JSON pointer, and the reason.
Node fromJsonFile(const std::string& file, const std::string& bytes);

/// On standard output.
void printJson(const Json& json);
