// The registry's keys and values in the store. Call these functions in a Transaction; they throw Failure.
#pragma once

#include "database/database.h"
#include "text.h"

#include <string>

namespace winhost::registry {

using database::check;
using database::Failure;
using database::outcome;
using database::Query;
using database::require;

using NodeId = std::int64_t;

constexpr NodeId currentUserId = 1;
constexpr NodeId localMachineId = 2;

constexpr std::size_t longestKeyName = 256;
constexpr std::size_t longestValueName = 16383;

/// A question whose answer is cached.
struct Question
{
    enum Kind : std::uint32_t
    {
        ePath,     ///< the key at a path with backslashes as separators; a leading backslash is an error
        eValue,    ///< the value with the given name
        eSubKeyAt, ///< the sub-key at an index, in the order of names
        eValueAt
    };

    Kind kind;
    TextView text = {};
    DWORD index = 0;
    NodeId node = 0;
};

struct Answer
{
    LSTATUS status = ERROR_SUCCESS; ///< if it failed, the reason; the other members are then unset
    DWORD type = 0;
    NodeId node = 0; ///< of a path
    std::string data = {};
    Text name = {}; ///< the original spelling of the name; unset for a path
};

/// Returns the cached answer, otherwise reads the store. Do not call this after a change in the same
/// Transaction.
Answer find(const Question& question);

/// The numbers of a key's sub-keys and values, and the greatest lengths of their names and data in bytes.
struct Measure
{
    std::int64_t subKeys = 0;
    std::int64_t longestSubKey = 0;
    std::int64_t values = 0;
    std::int64_t longestValueName = 0;
    std::int64_t longestData = 0;
};
Measure measure(NodeId node);

// ---- Changes

/// Creates the missing part of a path, and sets created if any part was missing. Returns the key.
NodeId createPath(NodeId start, TextView path, bool& created);
/// Sets a value and returns the answer to a later question for it.
Answer setValue(NodeId node, TextView name, DWORD type, std::string_view data);
void deleteValue(NodeId node, TextView name);
/// Deletes a key; throws ERROR_ACCESS_DENIED for a root and for a key that has sub-keys.
void deleteKey(NodeId node);
/// Deletes all sub-keys and values and, if withItself is true, the key.
void deleteTree(NodeId node, bool withItself);

} // namespace winhost::registry
