// The current user's registry. These functions call the system directly, because the library's functions do
// not report why they fail. Export, import and diff use a Tree, which contains a key and everything below it.
//
// Start-up records the names that it chooses, so only the `provision` command starts the library.
#pragma once

#include "text/text.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

struct Value
{
    Text name;
    unsigned long type = REG_NONE;
    std::string data;
};

/// A type of value, for the commands set, get and search and for JSON.
struct ValueType
{
    std::string_view name;
    unsigned long registryType;
    std::size_t least;     ///< the minimum size, in bytes, of data that applications read as this type
    std::size_t most;      ///< the maximum size, in bytes, of data that applications read as this type
    bool isJsonNumber;     ///< whether JSON files store the value as a number, not as a string
    std::string_view word; ///< a description of valid input, used in messages
    std::optional<std::string> (*parse)(
        std::string_view word); ///< returns the data, or nothing if the word is invalid
    std::string (*print)(const Value& value);

    /// Returns whether the stored value can be printed as this type.
    bool fits(const Value& value) const;
};

extern const std::vector<ValueType> valueTypes;
/// Returns null if there is no such type.
const ValueType* typeNamed(std::string_view name);
/// Returns the type as which an application can read the value, or null if no application can read it.
const ValueType* typeOf(const Value& value);

/// Returns the data in the format of `rkuinfo get`, or in hexadecimal if applications cannot read the value.
std::string dataText(const Value& value);
/// Returns the text of a REG_SZ, up to its first null character.
Text textOf(const Value& value);
std::string hexText(std::string_view bytes);
std::optional<std::string> bytesFromHex(std::string_view word);
Value textValue(const Text& name, const Text& text);

template <typename Number>
std::string bytesOf(Number number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

/// Messages about keys and values that could not be read.
using Losses = std::vector<std::string>;

/// Calls `read`. Catches a Failure and appends its description of the problem to `losses`. Does not catch it
/// if `losses` is null or the command line is wrong.
template <typename Read>
void guard(Losses* losses, const Read& read)
{
    try {
        read();
    } catch (const Failure& failure) {
        if (losses == nullptr || failure.exitCode == exitUsage) {
            throw;
        }
        losses->push_back(failure.problem);
    }
}

/// If the status is an error, throws a Failure with its meaning and the location of the registry.
void require(LSTATUS status, const std::string& subject);

// The functions below access the current user's keys. On error, they throw a Failure that contains the
// system's error message.

bool keyExists(const Text& path);
/// Returns nothing if the key or value does not exist.
std::optional<Value> readValue(const Text& path, const Text& name);

/// The longest value name that an application can read.
constexpr std::size_t longestValueName = 1023;

/// Returns whether an application can read a key with this path. The path must have at most 1020 characters,
/// and each name in it must have 1 to 255.
bool isUsablePath(TextView path);

/// The name of a key or value in a tree. The tree's own key has an empty path.
struct Name
{
    Text key;
    std::optional<Text> value = std::nullopt;

    bool isKey() const { return !value.has_value(); }
};

/// Ignores case. Sorts a key before its values, and its values before its sub-keys.
struct LessName
{
    bool operator()(const Name& a, const Name& b) const;
};

/// Maps names to values; a key is mapped to an empty Value.
using Tree = std::map<Name, Value, LessName>;

/// Reads a key, its values and the names of its sub-keys. If `isDeep` is true, also reads everything below
/// the key. Returns an empty tree if the key does not exist. If something cannot be read, throws a Failure
/// or, if `losses` is not null, appends the problem to it and continues.
Tree readTree(const Text& path, bool isDeep = true, Losses* losses = nullptr);

/// A change from an imported file: stores a value, creates a key, or removes a value or key.
struct Edit
{
    Name name;
    Value value = {};
    bool isRemoval = false;
};

/// Applies the changes listed in a file to a tree in memory.
void edit(Tree& tree, const std::vector<Edit>& edits);

/// A difference between two trees. Both trees must outlive the Change. A null pointer means that the key or
/// value does not exist.
struct Change
{
    Name name;
    const Value* before;
    const Value* after;
};

std::vector<Change> compare(const Tree& before, const Tree& after);

/// Applies changes below a key. Throws a Failure if a change is refused or the user presses Ctrl-C; the
/// caller's transaction then undoes all changes. On a system without transactions, this function undoes its
/// changes itself.
void carryOut(const Text& root, const std::vector<Change>& changes);
