// The registry's keys and values in the store, in an Access. Every function answers with a Win32 error.
#pragma once

#include "registry/store.h"
#include "text.h"

namespace winhost::registry {

constexpr std::size_t longestKeyName = 256;
constexpr std::size_t longestValueName = 16383;

/// A terminated text as a name; a null one is empty.
inline TextView nameOf(const wchar_t* text)
{
    return text != nullptr ? TextView(text) : TextView();
}

/// What can be asked again and again.
struct Question
{
    enum Kind : std::uint32_t
    {
        ePath,     ///< the key at a path: components between backslashes; empty ones count only in front, an
                   ///< error
        eValue,    ///< the value of a name
        eSubKeyAt, ///< by index, in the order of names
        eValueAt
    };

    Kind kind;
    DWORD index;
    NodeId node;
    TextView text;

    static Question path(NodeId start, TextView path) { return {ePath, 0, start, path}; }
    static Question value(NodeId node, TextView name) { return {eValue, 0, node, name}; }
    static Question at(Kind kind, NodeId node, DWORD index) { return {kind, index, node, {}}; }
};

struct Answer
{
    LSTATUS status = ERROR_SUCCESS;
    NodeId node = 0; ///< of a path
    TextView name;   ///< as created; of what has an index
    DWORD type = 0;
    std::string_view data;
};

/// Numbers of a key: counts, and the longest name in units and data in bytes.
struct Measure
{
    std::int64_t subKeys = 0;
    std::int64_t longestSubKey = 0;
    std::int64_t values = 0;
    std::int64_t longestValueName = 0;
    std::int64_t longestData = 0;
};
LSTATUS measure(NodeId node, Measure& out);

// ---- Changes, in an Access for writing
// ----------------------------------------------------------------------

/// In an empty store.
LSTATUS createFirstKeys();
/// Creates what is missing of the path.
LSTATUS createPath(NodeId start, TextView path, NodeId& found, bool& created);
LSTATUS setValue(NodeId node, TextView name, DWORD type, std::string_view data);
LSTATUS deleteValue(NodeId node, TextView name);
/// ERROR_ACCESS_DENIED for a root and for a key that has sub-keys.
LSTATUS deleteKey(NodeId node);
/// Deletes all sub-keys and values.
LSTATUS deleteContent(NodeId node);

} // namespace winhost::registry
