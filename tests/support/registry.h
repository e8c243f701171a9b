// The registry as raw calls see it.
#pragma once

#include "support/text.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

namespace testing_support {

struct CloseKey
{
    void operator()(HKEY key) const { RegCloseKey(key); }
};
using OwnedKey = std::unique_ptr<HKEY__, CloseKey>;

struct RawValue
{
    DWORD type = REG_NONE;
    std::string bytes;

    bool operator==(const RawValue&) const = default;
};

/// How a value is printed in a failure.
void PrintTo(const RawValue& value, std::ostream* stream);

/// A REG_SZ of an UTF-8 text, terminator included.
RawValue text(const std::string& utf8);
RawValue dword(std::uint32_t number);

/// Makes the key and everything above it, or opens it.
OwnedKey makeKey(HKEY root, const std::string& path);
void removeKey(HKEY root, const std::string& path);

/// Sets a value, making the key. An empty name is the default value.
void setRaw(HKEY root, const std::string& path, const std::string& name, const RawValue& value);
/// Gives a key this one value, or none.
void remakeKey(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value);
std::optional<RawValue> getRaw(HKEY root, const std::string& path, const std::string& name);

/// RegEnumValueW or RegEnumKeyExW, for a name alone.
LSTATUS enumerate(bool values, HKEY key, DWORD index, wchar_t* name, DWORD* length);

/// Every key and value at and below a key, a line each; equal texts mean equal trees, and an empty one no
/// key.
std::string tree(HKEY root, const std::string& path);

/// Marks a language as installed for the default product.
void addUninstallEntry(long lcid);

} // namespace testing_support
