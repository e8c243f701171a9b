// The registry's keys and values in the store, in an Access. Every function answers with a Win32 error.
#pragma once

#include "registry/store.h"
#include "text.h"

#include <string>

namespace winhost::registry {

constexpr std::size_t longestKeyName = 256;
constexpr std::size_t longestValueName = 16383;

/// What can be asked again and again.
struct Question
{
    enum Kind : std::uint32_t
    {
        ePath,     ///< the key at a path, of components between backslashes; one in front is an error
        eValue,    ///< the value of a name
        eSubKeyAt, ///< by index, in the order of names
        eValueAt
    };

    Kind kind;
    NodeId node;
    TextView text = {};
    DWORD index = 0;
};

struct Answer
{
    LSTATUS status = ERROR_SUCCESS;
    DWORD type = 0;
    NodeId node = 0; ///< of a path
    Text name;       ///< as created; of what has an index, and of a value
    std::string data;
};

/// What is remembered, else what the store has. Not behind a change in the same Access.
Answer find(const Question& question);

/// Of a key's sub-keys or values: how many, and the longest name and data in bytes.
struct Measure
{
    std::int64_t count = 0;
    std::int64_t longestName = 0;
    std::int64_t longestData = 0;
};
LSTATUS measure(NodeId node, Measure& subKeys, Measure& values);

// ---- Changes, in an Access for writing

/// In an empty store.
LSTATUS createFirstKeys();
/// Creates what is missing of the path.
LSTATUS createPath(NodeId start, TextView path, NodeId& found, bool& created);
/// Gives what a question for the value has as its answer then.
LSTATUS setValue(NodeId node, TextView name, DWORD type, std::string_view data, Answer& written);
LSTATUS deleteValue(NodeId node, TextView name);
/// ERROR_ACCESS_DENIED for a root and for a key that has sub-keys.
LSTATUS deleteKey(NodeId node);
/// Deletes all sub-keys and values, and the key itself where that is wanted.
LSTATUS deleteTree(NodeId node, bool withItself);

} // namespace winhost::registry
