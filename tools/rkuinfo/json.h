// JSON: texts, values and subtrees without loss.
//
// A key is {"values": [{"name": N, "type": T, "value": V}...], "keys": [{"name": N, "values": ..., "keys":
// ...}...]}. The default value's name is empty, binary values are in hexadecimal. A text that is no valid
// UTF-16 is
// {"utf16": [numbers]}, since JSON has no other place for a lone surrogate.
#pragma once

#include "text.h"

#include <RkUInfo.h>

#include <nlohmann/json.hpp>

#include <optional>

using Json = nlohmann::ordered_json;

Json toJson(TextView text);
/// Nothing for what is no text, or holds a null character.
std::optional<Text> textFrom(const Json& json);

/// {"type", "value"}.
Json toJson(const VelaVariant& value);
/// From an object with "type" and "value"; nothing for what cannot be stored.
std::optional<VelaVariant> valueFrom(const Json& json);

/// On standard output.
void printJson(const Json& json);
