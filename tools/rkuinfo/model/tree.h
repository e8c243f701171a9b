// A key with everything below it, in memory: what export writes, import reads and diff compares.
#pragma once

#include "model/registry.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// Of what an application can read.
constexpr std::size_t longestValueName = 1023;

/// Whether an application can read the key of a path: it has at most 1020 characters and each name 1 to 255.
bool isUsablePath(TextView path);

/// A key below the tree's own, whose path is empty, or a value of one.
struct Name
{
    Text key;
    std::optional<Text> value;

    bool isKey() const { return !value.has_value(); }
};

/// Without regard to case; a key comes right before its values, and these before what is below the key.
struct LessName
{
    bool operator()(const Name& a, const Name& b) const;
};

/// A key is an empty value.
using Tree = std::map<Name, Value, LessName>;

/// Reads a key and everything below it. Throws for what cannot be read; with losses, appends to them instead,
/// and continues.
Tree readTree(Key key, Losses* losses = nullptr);

/// A step of a file: stores a value or creates a key, or removes one.
struct Edit
{
    Name name;
    Value value;
    bool isRemoval = false;
};

/// Does what a file says to a tree in memory.
void edit(Tree& tree, const std::vector<Edit>& edits);

/// A difference of two trees, which have to outlive it; null where one has nothing.
struct Change
{
    Name name;
    const Value* before;
    const Value* after;
};

std::vector<Change> compare(const Tree& before, const Tree& after);

/// Carries changes out below a key. When one is refused or the user interrupts it, undoes those before it and
/// throws why; where the system has transactions, the caller's does that.
void carryOut(const Text& root, const std::vector<Change>& changes);

/// Prints "+", "~" or "-", and the key or value; a line each.
void printChanges(const std::vector<Change>& changes);
