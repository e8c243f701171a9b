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

/// A REG_SZ of an UTF-8 text, terminator included.
RawValue text(const std::string& utf8);
RawValue dword(std::uint32_t number);

/// Opens a key; null where it cannot be opened.
OwnedKey openKey(HKEY root, const std::string& path, REGSAM access = KEY_READ);
/// Makes the key and everything above it, or opens it.
OwnedKey makeKey(HKEY root, const std::string& path);
void removeKey(HKEY root, const std::string& path);

/// Makes the key, and sets a value, if there is one. An empty name is the default value.
LSTATUS setRaw(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value);
inline LSTATUS setRaw(HKEY root, const std::string& path, const std::string& name, const RawValue& value)
{
    return setRaw(root, path, name, std::optional(value));
}
/// Gives a key this one value, or none.
void remakeKey(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value);
std::optional<RawValue> getRaw(HKEY root, const std::string& path, const std::string& name);

/// RegEnumValueW or RegEnumKeyExW, for a name alone.
LSTATUS enumerate(bool values, HKEY key, DWORD index, wchar_t* name, DWORD* length);

/// A value's type and bytes, as a line of tree() has them behind the name.
std::string print(const RawValue& value);
/// Every key and value at and below a key, a line each; equal texts mean equal trees, and an empty one no
/// key.
std::string tree(HKEY root, const std::string& path);

/// Marks a language as installed for the default product.
void addUninstallEntry(long lcid);

} // namespace testing_support
