// A key with everything below it, in memory: what export writes, import reads and diff compares.
#pragma once

#include "model/registry.h"

#include <functional>
#include <string>
#include <vector>

/// So many keys of one character below each other are the longest path that an application can read.
constexpr std::size_t deepestKey = 510;

struct Node
{
    Text name;
    std::vector<Value> values;
    std::vector<Node> keys;
    bool isRemoved = false;          ///< a file may ask for that
    std::vector<Text> removedValues; ///< and for that
    bool isMade = true;              ///< false for what only leads to a removal, or is one

    /// The key of that name below; when there is none, a new one that is not to be made.
    Node& below(const Text& keyName);
};

Node readTree(const Key& key);

/// One difference between what is there and what a file says.
struct Change
{
    enum class Kind
    {
        added,
        changed,
        removed,
    };

    Kind kind = Kind::added;
    Text key;           ///< below the one that was named
    bool isKey = false; ///< the key itself
    Value before;
    Value after;
};

/// What importing a file would do, or, with isWhole, what tells the two apart.
std::vector<Change> changes(const Node& present, const Node& wanted, bool isWhole);

/// Carries them out; when one is refused, takes back those before it and throws why. progress is told how
/// many are done.
void apply(const Text& root, const std::vector<Change>& changes,
           const std::function<void(std::size_t)>& progress);

/// "+", "~" or "-", and the key or value; a line each.
void printChanges(const std::vector<Change>& changes);
