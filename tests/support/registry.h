// Reads and writes the registry with Win32 calls.
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

/// Returns a REG_SZ with its terminator.
RawValue text(const std::string& utf8);
RawValue dword(std::uint32_t number);

/// Opens a key; returns null if that fails.
OwnedKey openKey(HKEY root, const std::string& path, REGSAM access = KEY_READ);
/// Opens a key, and creates it if necessary; returns null on failure.
OwnedKey makeKey(HKEY root, const std::string& path);
void removeKey(HKEY root, const std::string& path);

/// Creates the key if necessary and sets the value, if one is given. An empty name means the default value.
LSTATUS setRaw(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value);
/// Deletes the key, then calls setRaw().
void remakeKey(HKEY root, const std::string& path, const std::string& name,
               const std::optional<RawValue>& value);
std::optional<RawValue> getRaw(HKEY root, const std::string& path, const std::string& name);

/// Reads the name of the value or sub-key with the given index.
LSTATUS enumerate(bool values, HKEY key, DWORD index, wchar_t* name, DWORD* length);

/// Prints a value's type and bytes in the format of tree().
std::string print(const RawValue& value);
/// Prints a key and everything below it, one key or value per line. Returns an empty string if the key does
/// not exist.
std::string tree(HKEY root, const std::string& path);

/// Marks a language as installed for the default product.
void addUninstallEntry(long lcid);

} // namespace testing_support
