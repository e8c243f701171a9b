// The current user's registry by the system's calls: they return why something is refused, which the library
// does not. A key with everything below it is a tree in memory: export writes it, import reads it, diff
// compares it.
//
// Commands that only look read the registry here and do not start the library: start-up would record the
// names that it chose.
#pragma once

#include "text/text.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

/// A value as it is stored.
struct Value
{
    Text name;
    unsigned long type = REG_NONE;
    std::string data;
};

/// A type of value: what set accepts, get prints, search finds and JSON contains.
struct ValueType
{
    std::string_view name;
    unsigned long registryType;
    std::size_t least; ///< bytes of a value that an application reads as this type
    std::size_t most;
    bool isJsonNumber;     ///< in JSON a number, otherwise a string
    std::string_view word; ///< what a word of this type looks like
    std::optional<std::string> (*parse)(
        std::string_view word); ///< returns the data; nothing if the word is invalid
    std::string (*print)(const Value& value);

    /// Returns whether the stored value can be printed as this type.
    bool fits(const Value& value) const;
};

extern const std::vector<ValueType> valueTypes;
/// Returns null if there is no such type.
const ValueType* typeNamed(std::string_view name);
/// Returns the type that an application reads the value as; null if it cannot read it.
const ValueType* typeOf(const Value& value);

/// Returns a number, the bytes in hexadecimal, or the text; the bytes of a value that applications cannot
/// read.
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

/// Reads something. With losses, appends a problem to them; only a wrong command line is thrown.
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

/// Throws for a status other than success, with its meaning and the place of the registry.
void require(LSTATUS status, const std::string& subject);

// The functions for keys of the current user throw the system's reason if the registry refuses something.

bool keyExists(const Text& path);
/// Returns nothing if there is no such key or value.
std::optional<Value> readValue(const Text& path, const Text& name);

/// The longest name that an application can read.
constexpr std::size_t longestValueName = 1023;

/// Returns whether an application can read the key of a path: at most 1020 characters, with names of 1 to
/// 255.
bool isUsablePath(TextView path);

/// A key below the tree's own, whose path is empty, or a value of one.
struct Name
{
    Text key;
    std::optional<Text> value = std::nullopt;

    bool isKey() const { return !value.has_value(); }
};

/// Ignores case. A key precedes its values, and these precede the keys below it.
struct LessName
{
    bool operator()(const Name& a, const Name& b) const;
};

/// A key has an empty value.
using Tree = std::map<Name, Value, LessName>;

/// Reads a key and the names of the keys right below it, or everything below it; nothing if it does not
/// exist. Throws for what cannot be read; with losses, appends to them instead and continues.
Tree readTree(const Text& path, bool isDeep = true, Losses* losses = nullptr);

/// A change that a file makes: stores a value, creates a key, or removes one of them.
struct Edit
{
    Name name;
    Value value = {};
    bool isRemoval = false;
};

/// Makes the changes of a file in a tree in memory.
void edit(Tree& tree, const std::vector<Edit>& edits);

/// A difference of two trees, which have to outlive it. Null stands for no such key or value.
struct Change
{
    Name name;
    const Value* before;
    const Value* after;
};

std::vector<Change> compare(const Tree& before, const Tree& after);

/// Makes the changes below a key. If one is refused or the user interrupts it, throws the reason. The changes
/// made before are then undone: here on a system without transactions, otherwise by the caller's transaction.
void carryOut(const Text& root, const std::vector<Change>& changes);
